#pragma once

#include <string>
#include <vector>

#include "core/run/run_types.h"

// What the run window SAMPLING shows. The run drives it; the Qt window implements it, zorvel-run
// prints it and the tests record it.
//
// Threads: the run calls these from whatever thread runs the call it is in. Long calls
// (instrument work, see run_controller.h) run on the window's worker thread, so the Qt window
// must hand every call on to its own thread (post, never block). Calls never ask the view
// anything back: what the operator types (comment, scale, auto height) is pushed into the
// controller by the window instead.
namespace zorvel {

class RunView {
 public:
  virtual ~RunView() = default;

  // Form_Load: the frames and the grid's columns.
  virtual void layOut(const RunLayout& layout) = 0;
  // The file caption, the buttons, the comment box, the menu items and the legends, whole.
  virtual void showScreen(const RunScreen& screen) = 0;

  // Status: the prompt box. clearStatus empties it; showStatus adds one line below the others.
  // A step of instrument work clears it and shows its title.
  virtual void clearStatus() = 0;
  virtual void showStatus(const std::string& line) = 0;

  // GrdData. Column 0 holds row labels (the sample number, "12P", "Blank", "NS", "Control",
  // ...), headed "Sample"; columns 1..n the colours' readings ("0.0"), headed "ex/em" as the
  // wavelengths are set. Row 0 holds the heads, row 1 "Median"; readings fill rows 2, 3, ...
  // (the run's GridRow).
  virtual void setCell(int row, int column, const std::string& text) = 0;
  // The background of a cell in the standard 16-colour palette (quality-check results).
  virtual void setCellColour(int row, int column, int paletteIndex) = 0;
  // The "Median" row: each colour's control median ("0.0", empty when none).
  virtual void setMedianRow(const std::vector<std::string>& medians) = 0;
  // Makes sure the row exists and scrolls so that it is in view.
  virtual void showRow(int row) = 0;

  // Spectra: the scan plot. The horizontal axis runs lowerNm..upperNm (MinVal_Label and
  // MaxVal_Label show them, "0.0"), the vertical one yMin..yMax (YMin and YMax captions).
  virtual void clearSpectra() = 0;
  virtual void setSpectraScale(double lowerNm, double upperNm, double yMin, double yMax) = 0;
  // One scan point in a plot colour (palette index of its wavelength band).
  virtual void plotPoint(double wavelengthNm, double value, int paletteIndex) = 0;
  // Perc_Panel: the scan's progress, 0..100.
  virtual void setProgress(int percent) = 0;

  // Empties Comment_Box once the reading it belonged to is filed.
  virtual void clearComment() = 0;
  // The run is over: the window unloads itself (the run has done the rest).
  virtual void closeWindow() = 0;
};

}  // namespace zorvel

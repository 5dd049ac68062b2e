#pragma once

#include <string>
#include <vector>

// What the run window SAMPLING shows. The run controller drives it; the Qt window implements
// it, zorvel-run prints it and the tests record it.
//
// Threads: the controller calls these from whatever thread runs the call it is in. Long calls
// (instrument work, see run_controller.h) run on the window's worker thread, so the Qt window
// must hand every call on to its own thread (post, never block). Calls never ask the view
// anything back: what the operator types (comment, scale, auto height) is pushed into the
// controller by the window instead.
namespace zorvel {

// The buttons of the window: OK(1) Init/Read, OK(2) Quit, and AcceptReject(1..4).
enum class RunButton { InitRead, Quit, Accept, Reject, Control, Blank };

// Which choices AR_Frame offers.
struct RunChoices {
  bool accept = false;
  bool reject = false;
  bool control = false;
  bool blank = false;
};

class RunView {
 public:
  virtual ~RunView() = default;

  // Form_Load: the layout for fixed readings, the synchronous scan, or both.
  virtual void layOut(bool fixed, bool synch) = 0;
  // MenuFilename's caption: "NAME.FIX", "NAME.SYN" or "NAME.FIX/NAME.SYN".
  virtual void setFilenameCaption(const std::string& caption) = 0;

  // Status: the prompt box. clearStatus empties it; showStatus adds one line below the others.
  // A step of instrument work clears it and shows its title.
  virtual void clearStatus() = 0;
  virtual void showStatus(const std::string& line) = 0;

  // GrdData. Column 0 holds row labels; columns 1..n the colours, headed "ex/em" ("0").
  // Row 0 holds the heads, row 1 "Median" with each colour's control median ("0.0", empty
  // when none), row 2 "Sample"; readings fill rows 3, 4, ... (the controller's GridRow + 2).
  virtual void setGridColumns(const std::vector<std::string>& heads) = 0;
  virtual void setMedianRow(const std::vector<std::string>& medians) = 0;
  // The row's first cell: the sample number, "12P", "Blank", "NS", "Control", ...
  virtual void setRowLabel(int row, const std::string& label) = 0;
  // A colour's reading ("0.0") in the row; column is 1-based.
  virtual void setCell(int row, int column, const std::string& text) = 0;
  // The background of a cell in the standard 16-colour palette (quality-check results).
  virtual void setCellColour(int row, int column, int paletteIndex) = 0;
  // Makes sure the row exists and scrolls so that it is in view.
  virtual void showRow(int row) = 0;

  // AR_Frame with the given buttons; hidden when none is offered. The first visible button
  // takes the focus.
  virtual void showChoices(const RunChoices& choices) = 0;
  // Comment_Box and Comment_Label; clearComment empties the box's text.
  virtual void showComment(bool visible) = 0;
  virtual void clearComment() = 0;

  // OK_Frame, the caption of OK(1) ("&Init" or "&Read Sample"), the focus.
  virtual void showOkFrame(bool visible) = 0;
  virtual void setOkCaption(const std::string& caption) = 0;
  virtual void setFocus(RunButton button) = 0;
  // The menu items ResetSamp and TubeRange.
  virtual void setResetSampEnabled(bool enabled) = 0;
  // AbortMsg, the key legend ("F5 - Abort      F11 - Pause"); empty hides it.
  virtual void setKeyLegend(const std::string& text) = 0;

  // Spectra: the scan plot. The horizontal axis runs lowerNm..upperNm (MinVal_Label and
  // MaxVal_Label show them, "0.0"), the vertical one yMin..yMax (YMin and YMax captions).
  virtual void clearSpectra() = 0;
  virtual void setSpectraScale(double lowerNm, double upperNm, double yMin, double yMax) = 0;
  // One scan point in a plot colour (palette index of its wavelength band).
  virtual void plotPoint(double wavelengthNm, double value, int paletteIndex) = 0;
  // Perc_Panel: the scan's progress, 0..100.
  virtual void setProgress(int percent) = 0;

  // TimeInfo: the elapsed/estimated time lines of a tray run.
  virtual void setTimeInfo(const std::vector<std::string>& lines) = 0;

  // The run is over: the window unloads itself (the controller has done the rest).
  virtual void closeWindow() = 0;
};

}  // namespace zorvel

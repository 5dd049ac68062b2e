#pragma once

#include <string>
#include <vector>

#include "core/quality/quality_plot.h"
#include "core/quality/quality_snapshot.h"

namespace zorvel {

// The alert window's own texts.
namespace alert_text {
inline constexpr const char* kCaption = "Validation Sample(s) Out of Range";
inline constexpr const char* kQuestion =
    "One or more validation values were outside the current limits for that color.  Is this a "
    "valid control sample?";
inline constexpr const char* kLegend[] = {"Yes - accept sample", "No - reread sample",
                                          "Cancel - abort sample", "More Info - show details",
                                          "Check Trend - show controls over time"};
}  // namespace alert_text

// One colour's figures in the details frame, each "0.000".
struct AlertFigures {
  std::string cv;
  std::string lower;
  std::string median;
  std::string upper;
  std::string value;
};

// What the alert window ERRFORM shows.
class AlertView {
 public:
  virtual ~AlertView() = default;
  // ColorOutOfRange: options 1..n shown with these captions, the others hidden.
  virtual void setOptions(const std::vector<std::string>& captions) = 0;
  virtual void selectOption(int option) = 0;
  virtual void showFigures(const AlertFigures& figures) = 0;
  // BoxPlot: cleared and drawn anew.
  virtual void drawBoxPlot(const QcPlot& plot) = 0;
  // The details frame ColorInfo.
  virtual void showDetails(bool visible) = 0;
  // The trend window, modal, opened from here ("Current Value: " shown) on the colour.
  virtual void openTrend(const QcSnapshot& snapshot, int colour) = 0;
  // Closes the window; its answer is the check's verdict.
  virtual void closeWith(int answer) = 0;
};

// The rules of the alert window: one option per flagged colour, the chosen colour's
// quartiles against the reading, and the answer 6 (keep), 7 (read again) or 2 (abort).
class AlertPresenter {
 public:
  AlertPresenter(const QcSnapshot& snapshot, AlertView& view);

  void Form_Load();
  void ColorOutOfRange_Click(int option);
  void Yes_Click() { answer(6); }
  void No_Click() { answer(7); }
  void Cancel_Click() { answer(2); }
  void MoreInfo_Click() { view_.showDetails(true); }
  void LessInfo_Click() { view_.showDetails(false); }
  void TrendCheck_Click();

  // ValidationAnswer: 0 until a button answered.
  int ValidationAnswer() const { return answer_; }
  // The colour an option shows (1-based), 0 for none.
  int colourOf(int option) const;

  // The box plot of one colour: x 0..10, y from median + d down to median - d, where d is
  // 1.2 times the reading's distance from the median (see the .cpp for a reading on it).
  static QcPlot BoxPlot(const ColourStatistics& stats, double value);

 private:
  void answer(int code);

  const QcSnapshot& snapshot_;
  AlertView& view_;
  std::vector<int> optionColours_;  // option k - 1 -> colour
  int shownColour_ = 0;
  int answer_ = 0;
};

}  // namespace zorvel

#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/platform/operator.h"
#include "core/quality/quality_plot.h"
#include "core/quality/quality_snapshot.h"

namespace zorvel {

namespace trend_text {
inline constexpr const char* kCaption = "Controls Display";
inline constexpr const char* kControlsCaption = "Controls Screen";
inline constexpr const char* kBlanksCaption = "Blanks Screen";
inline constexpr const char* kNoBlanks = "There are no blanks available for this dataset.";
inline constexpr const char* kCurrentValue = "Current Value: ";
}  // namespace trend_text

// CtlOrBlank's options.
inline constexpr int kTrendControls = 0;
inline constexpr int kTrendBlanks = 1;

// The two colours the entries of consecutive batches alternate between: blue and light red.
inline constexpr std::array<int, 2> kTrendPointColours = {1, 12};

// One database colour's trend figures: mean, SD, CV and the plotted range (mean +/- 4 SD).
struct TrendFigures {
  double mean = 0;
  double sd = 0;
  double cv = 0;
  double bottom = 0;
  double top = 0;
};

// What the trend window TREND shows.
class TrendView {
 public:
  virtual ~TrendView() = default;
  virtual void setCaption(const std::string& caption) = 0;
  // ColorOutOfRange: one option per colour.
  virtual void setColourOptions(const std::vector<std::string>& captions) = 0;
  virtual void selectKind(int kind) = 0;
  virtual void selectColour(int option) = 0;
  // MeanLabel, SDLabel, CVLabel.
  virtual void setFigures(const std::string& mean, const std::string& sd,
                          const std::string& cv) = 0;
  // CurValue; hidden when not visible.
  virtual void setCurrentValue(const std::string& text, bool visible) = 0;
  // YLabel(0) at the bottom .. YLabel(5) at the top.
  virtual void setAxisLabels(const std::array<std::string, 6>& labels) = 0;
  // Spectra: cleared and drawn anew.
  virtual void drawTrend(const QcPlot& plot) = 0;
  virtual void close() = 0;
};

// The rules of the trend window: the control or blank database of one colour entry by entry,
// with its mean, SD and CV; the reading being checked when opened from the alert window.
class TrendPresenter {
 public:
  // fromAlert: TrendFromAlert (the reading's value is shown); colour: the option chosen first.
  TrendPresenter(const QcSnapshot& snapshot, Operator& op, TrendView& view, bool fromAlert,
                 int colour = 1);

  void Form_Load();
  void CtlOrBlank_Click(int kind);
  void ColorOutOfRange_Click(int option);
  void OK_Click() { view_.close(); }

  int kind() const { return kind_; }
  int colour() const { return colour_; }

  static TrendFigures Figures(const QcDatabase& db, int colour);
  static QcPlot Plot(const QcDatabase& db, int colour, const TrendFigures& figures);
  // The caption of a colour's option: ex/em/exsl/emsl.
  static std::string ColourCaption(const ColourDeclaration& pair);

 private:
  void draw();

  const QcSnapshot& snapshot_;
  Operator& op_;
  TrendView& view_;
  bool fromAlert_;
  int kind_ = kTrendControls;
  int colour_;
};

}  // namespace zorvel

#pragma once

#include <QDialog>
#include <array>

#include "core/platform/operator.h"
#include "core/quality/trend_presenter.h"

class QButtonGroup;
class QLabel;

namespace zorvel::ui {

class QcCanvas;

// TREND, "Controls Display": the control or blank database of one colour entry by entry, with
// its mean, SD and CV. The rules live in TrendPresenter.
class TrendWindow final : public QDialog, public TrendView {
  Q_OBJECT
 public:
  // fromAlert: opened by the alert window's "Check Trend" (the reading's value is shown).
  TrendWindow(const QcSnapshot& snapshot, Operator& op, bool fromAlert, int colour = 1,
              QWidget* parent = nullptr);

  TrendPresenter& presenter() { return presenter_; }

  void setCaption(const std::string& caption) override;
  void setColourOptions(const std::vector<std::string>& captions) override;
  void selectKind(int kind) override;
  void selectColour(int option) override;
  void setFigures(const std::string& mean, const std::string& sd, const std::string& cv) override;
  void setCurrentValue(const std::string& text, bool visible) override;
  void setAxisLabels(const std::array<std::string, 6>& labels) override;
  void drawTrend(const QcPlot& plot) override;
  void close() override { accept(); }

 private:
  QWidget* buildPlot();
  QWidget* buildFigures();

  TrendPresenter presenter_;
  QButtonGroup* kinds_ = nullptr;
  QButtonGroup* colours_ = nullptr;
  QWidget* colourPanel_ = nullptr;
  QcCanvas* spectra_ = nullptr;
  QLabel* mean_ = nullptr;
  QLabel* sd_ = nullptr;
  QLabel* cv_ = nullptr;
  QLabel* current_ = nullptr;
  std::array<QLabel*, 6> axis_{};
};

// "Show Existing Controls" from the main window, and the trend shown as a run with control data
// closes: modal, returns when OK closes it (the caller shows the main window again).
void ShowTrendWindow(const QcSnapshot& snapshot, Operator& op, QWidget* parent);

}  // namespace zorvel::ui

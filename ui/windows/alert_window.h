#pragma once

#include <QDialog>
#include <QPointer>
#include <array>

#include "core/platform/operator.h"
#include "core/quality/alert_presenter.h"

class QButtonGroup;
class QGroupBox;
class QLabel;
class QRadioButton;

namespace zorvel::ui {

class QcCanvas;

// ERRFORM, "Validation Sample(s) Out of Range": the colours of a control outside the band,
// each one's quartiles against the reading, and the operator's answer (6 keep, 7 read again,
// 2 abort) as the dialog's result. Escape or the close box count as Cancel. The rules live in
// AlertPresenter.
class AlertWindow final : public QDialog, public AlertView {
  Q_OBJECT
 public:
  AlertWindow(const QcSnapshot& snapshot, Operator& op, QWidget* parent = nullptr);

  AlertPresenter& presenter() { return presenter_; }

  void setOptions(const std::vector<std::string>& captions) override;
  void selectOption(int option) override;
  void showFigures(const AlertFigures& figures) override;
  void drawBoxPlot(const QcPlot& plot) override;
  void showDetails(bool visible) override;
  void openTrend(const QcSnapshot& snapshot, int colour) override;
  void closeWith(int answer) override { done(answer); }

 public slots:
  void reject() override { presenter_.Cancel_Click(); }

 private:
  QWidget* buildOptions();
  QGroupBox* buildDetails();
  QWidget* buildButtons();

  Operator& op_;
  AlertPresenter presenter_;
  QButtonGroup* options_ = nullptr;
  std::array<QRadioButton*, kMaxColours + 1> optionButtons_{};
  QGroupBox* details_ = nullptr;
  QcCanvas* boxPlot_ = nullptr;
  QLabel* min_ = nullptr;
  QLabel* median_ = nullptr;
  QLabel* max_ = nullptr;
  QLabel* value_ = nullptr;
  QLabel* cv_ = nullptr;
};

// The control check's alert on the desktop: the window is shown modally on the window thread
// (the run's worker waits for the answer).
class QtAlertDialog final : public AlertDialog {
 public:
  QtAlertDialog(Operator& op, QWidget* parent = nullptr) : op_(op), parent_(parent) {}
  void setParent(QWidget* parent) { parent_ = parent; }
  int ask(const QcSnapshot& snapshot) override;

 private:
  Operator& op_;
  QPointer<QWidget> parent_;
};

}  // namespace zorvel::ui

#pragma once

#include <QDialog>
#include <map>
#include <memory>

#include "core/checks/intensity_presenter.h"
#include "core/checks/intensity_view.h"
#include "ui/platform/instrument_worker.h"
#include "ui/windows/naming_operator.h"

class QButtonGroup;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zorvel::ui {

class FieldCommits;

// INTENSE, "Intensity Check": single readings at settings typed in. The reading runs on the
// instrument worker while the window repaints; the rules live in IntensityPresenter.
class IntensityWindow final : public QDialog, public IntensityView {
  Q_OBJECT
 public:
  // line: the window's own fluorimeter port (never null).
  IntensityWindow(AppState& state, Operator& op, Clock& clock, std::unique_ptr<SerialLine> line,
                  QWidget* parent = nullptr);
  ~IntensityWindow() override;

  IntensityPresenter& presenter() { return presenter_; }
  bool working() const { return worker_.busy(); }

  void showBoxText(IntensityBox box, const std::string& text) override;
  void showFilter(int position) override;
  void showVoltageOption(int option) override;
  void setVoltageBoxVisible(bool visible) override;
  void selectBoxText(IntensityBox box) override;
  void printStatus(int line, const std::string& text, bool clearFirst) override;
  void clearStatus() override;
  void close() override;

 public slots:
  void reject() override;

 private:
  QWidget* buildBoxes();
  QGroupBox* buildFilterGroup();
  QGroupBox* buildVoltageGroup();
  void readSample();
  void renderStatus();

  NamingOperator naming_;
  std::unique_ptr<SerialLine> line_;
  IntensityPresenter presenter_;
  FieldCommits* commits_ = nullptr;
  InstrumentWorker worker_;
  std::map<IntensityBox, QLineEdit*> boxes_;
  QButtonGroup* filter_ = nullptr;
  QButtonGroup* voltage_ = nullptr;
  QWidget* settingsPanel_ = nullptr;
  QLabel* status_ = nullptr;
  QPushButton* start_ = nullptr;
  std::map<int, QString> statusLines_;
  bool updating_ = false;
};

// Opens the intensity window modally on the fluorimeter's line and returns when it closes.
void RunIntensityWindow(AppState& state, Operator& op, Clock& clock,
                        std::unique_ptr<SerialLine> line, QWidget* parent);

}  // namespace zorvel::ui

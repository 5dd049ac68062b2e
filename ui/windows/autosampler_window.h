#pragma once

#include <QDialog>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "core/autosampler/autosampler_presenter.h"
#include "core/autosampler/autosampler_view.h"
#include "core/instruments/arm.h"
#include "core/instruments/pump.h"
#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/platform/serial_line.h"
#include "core/state/app_state.h"
#include "ui/platform/instrument_worker.h"
#include "ui/windows/naming_operator.h"

class QAbstractButton;
class QButtonGroup;
class QCheckBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QWidget;

namespace zorvel::ui {

class SequenceBar;

class FieldCommits;
class TrayPicture;

// ASDILUTOR, "AS Setup": the dilutor and tray settings, the arm's manual positioning and
// calibration, priming and the system checks, with the tray picture. Arm and pump work runs on
// the instrument worker while the window repaints; the rules live in AutosamplerPresenter.
class AutosamplerWindow final : public QDialog, public AutosamplerView {
  Q_OBJECT
 public:
  // The window owns the arm's and the dilutor's lines for as long as it is open.
  AutosamplerWindow(AppState& state, Operator& op, Clock& clock,
                    std::unique_ptr<SerialLine> armLine, std::unique_ptr<SerialLine> pumpLine,
                    AutosamplerHooks hooks, QWidget* parent = nullptr);
  ~AutosamplerWindow() override;

  AutosamplerPresenter& presenter() { return presenter_; }
  bool working() const { return worker_.busy(); }
  TrayPicture* trayPicture() const { return picture_; }

  void setFieldText(AutosamplerField field, const std::string& text) override;
  void selectFieldText(AutosamplerField field) override;
  void setOption(AutosamplerGroup group, int index) override;
  void setChecked(AutosamplerCheckBox box, bool checked) override;
  void setStandardBoxesVisible(bool visible) override;
  void setBlankBoxesVisible(bool visible) override;
  void setFreqCaptionVisible(bool visible) override;
  void showArmPosition(float xMm, float yMm) override;
  void setHeightText(const std::string& text) override;
  void setSavePositionEnabled(bool enabled) override;
  void setSequenceRunning(bool running) override;
  void showSequenceStep(const std::string& text) override;
  void showSequenceProgress(int done, int total) override;
  void trayChanged() override;
  void close() override;

 public slots:
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void labelled(QGridLayout* grid, int row, AutosamplerField which);
  QWidget* buildDilutor();
  QWidget* buildTray();
  QWidget* buildPositioning();
  void addArrowsAndPosition(QGridLayout* grid);
  void addHeightAndTube(QGridLayout* grid);
  QWidget* buildChecks();
  QLineEdit* field(AutosamplerField which);
  QWidget* optionGroup(AutosamplerGroup group, const char* name, const char* caption,
                       const std::vector<std::pair<int, const char*>>& options);
  // A button whose action runs once every box it may use has been committed.
  void act(QAbstractButton* button, std::function<void()> action);
  // Runs arm or pump work on the worker; nothing starts while another job runs. Afterwards the
  // focus goes back to where the operator was.
  void runJob(std::function<void()> job, std::function<void()> after = {});
  // A view update: at once on the window thread, queued from the worker.
  void onWindow(std::function<void()> update);
  void finish();

  AppState& state_;
  NamingOperator naming_;
  std::unique_ptr<SerialLine> armLine_;
  std::unique_ptr<SerialLine> pumpLine_;
  Arm arm_;
  Pump pump_;
  AutosamplerPresenter presenter_;
  InstrumentWorker worker_;
  std::map<AutosamplerField, QLineEdit*> fields_;
  std::map<AutosamplerGroup, QButtonGroup*> groups_;
  QWidget* controls_ = nullptr;
  QWidget* trayGroup_ = nullptr;
  SequenceBar* sequenceBar_ = nullptr;
  TrayPicture* picture_ = nullptr;
  QCheckBox* standardBox_ = nullptr;
  QCheckBox* blankBox_ = nullptr;
  QLabel* freqCaption_ = nullptr;
  QLineEdit* xPos_ = nullptr;
  QLineEdit* yPos_ = nullptr;
  QLineEdit* height_ = nullptr;
  QLineEdit* tube_ = nullptr;
  FieldCommits* commits_ = nullptr;
  QWidget* savePos_ = nullptr;
  bool opened_ = false;
};

// Opens the autosampler window modally on the arm's and the dilutor's lines and returns when it
// closes.
void RunAutosamplerWindow(AppState& state, Operator& op, Clock& clock,
                          std::unique_ptr<SerialLine> armLine, std::unique_ptr<SerialLine> pumpLine,
                          AutosamplerHooks hooks, QWidget* parent);

}  // namespace zorvel::ui

#pragma once

#include <QMainWindow>
#include <map>

#include "core/app/main_presenter.h"
#include "core/app/main_view.h"
#include "core/checks/watercell_record.h"
#include "core/platform/line_source.h"
#include "core/platform/notifier.h"
#include "core/quality/quality_checks.h"
#include "ui/windows/naming_operator.h"

class QAction;
class QGroupBox;
class QLabel;
class QPushButton;

namespace zorvel::ui {

// MAIN, the parent window, holding METHODFORM, the main method window with its menus, its
// current-files frame and the method editor. The rules live in MainPresenter.
class InstrumentWorker;

class MainWindow final : public QMainWindow, public MainView {
  Q_OBJECT
 public:
  MainWindow(AppState& state, Operator& op, Clock& clock, Printer& printer,
             QWidget* parent = nullptr);

  MainPresenter& presenter() { return presenter_; }
  QAction* action(MainMenu item) const { return actions_.at(item); }
  // Skips the modal disclaimer (tests and unattended starts).
  void setDisclaimerShown(bool shown) { disclaimerEnabled_ = shown; }
  // Where the instrument windows find their lines. Until this is called they cannot open.
  // Also names the simulated instruments in the title.
  void setInstruments(LineSource* lines);
  // The control and blank checks every run files through; their trend is shown from here.
  void setQualityChecks(QualityChecks& checks);
  // Where run windows tell a tray run's end and first alert; null: nowhere.
  void setNotifier(Notifier* notifier) { notifier_ = notifier; }

  void setMethodFileLabel(const std::string& text) override;
  void setDataFileLabel(const std::string& text) override;
  void setTrayFile(const std::string& path, bool visible) override;
  void setMenuEnabled(MainMenu item, bool enabled) override;
  void setCurrentFilesVisible(bool visible) override;
  void setMethodControlsEnabled(bool enabled) override;
  void showDisclaimer() override;
  bool runSetupWindow() override;
  void closeAllWindows() override;
  void setLaunchButtons(bool saveEnabled, bool okEnabled) override;
  void openRunWindow(const RunSetup& setup) override;
  void showMedians(const std::vector<std::string>& medians) override;
  // On the window's worker thread, with a busy cursor and the menus and controls disabled.
  void runBusy(std::function<void()> work, std::function<void()> done) override;

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  // A tray geometry file was loaded from the setup or autosampler window.
  void trayLoaded(const std::string& path, bool visible);
  void buildMenus();
  QWidget* buildMethodForm();
  void showAbout();
  void showSimulatedMarking();
  std::unique_ptr<SerialLine> fluorimeterLine();
  void openWaterCell();
  void openIntensityCheck();
  void openAutosampler();

  AppState& state_;
  Operator& op_;
  NamingOperator naming_;
  MainPresenter presenter_;
  std::map<MainMenu, QAction*> actions_;
  QGroupBox* currentFiles_ = nullptr;
  QLabel* methodLabel_ = nullptr;
  QLabel* dataLabel_ = nullptr;
  QLabel* trayCaption_ = nullptr;
  QLabel* trayLabel_ = nullptr;
  QLabel* medians_ = nullptr;
  class MethodForm* form_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* ok_ = nullptr;
  InstrumentWorker* worker_ = nullptr;
  Clock& clock_;
  Printer& printer_;
  LineSource* lines_ = nullptr;
  WaterCellResult lastWaterCell_;
  QualityChecks* checks_ = nullptr;
  Notifier* notifier_ = nullptr;
  bool disclaimerEnabled_ = true;
  bool stopping_ = false;
  bool activationQueued_ = false;
};

}  // namespace zorvel::ui

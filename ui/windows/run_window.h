#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/platform/line_source.h"
#include "core/run/run_controller.h"
#include "core/run/run_status_file.h"
#include "core/run/run_view.h"

class QAction;
class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QMenu;
class QMenuBar;
class QProgressBar;
class QPushButton;
class QTimer;

namespace zorvel {
class Arm;
class Notifier;
class Pump;
class QcRowTracker;
class QualityChecks;
class TrayRunNotices;
}  // namespace zorvel

namespace zorvel::ui {

class InstrumentWorker;
class ResultsGrid;
class RunViewRelay;
class SpectraPlot;
class TrayStatusPanel;

// What a run window borrows from the program for the length of the run.
struct RunWindowServices {
  AppState& state;
  Operator& op;
  Clock& clock;
  Printer& printer;
  QualityCheck& checks;
  // The control and blank checks themselves, when the run has them: they paint the grid row
  // of the reading they judge for as long as the window is open. Null: nothing is painted.
  QualityChecks* qualityChecks = nullptr;
  // Where a tray run's end and first alert are told to someone away from the screen; null:
  // nowhere.
  Notifier* notifier = nullptr;
};

// SAMPLING, the run window: the results grid, the prompts, the decision buttons with the
// comment box, the scan plot and the time display of one analysis run. The rules live in the
// RunController; this window shows what it is told and forwards the operator's clicks and
// keys. Instrument work (Init, Read, the decisions) runs on the window's own worker thread, so
// the window repaints and answers meanwhile; the controller's view calls come back queued.
class RunWindow final : public QWidget, public RunView {
  Q_OBJECT
 public:
  // The arm's and the dilutor's lines of a tray run (autosampler delivery).
  struct TrayLines {
    std::unique_ptr<SerialLine> arm;
    std::unique_ptr<SerialLine> pump;
  };
  RunWindow(const RunWindowServices& services, const RunSetup& setup,
            std::unique_ptr<SerialLine> fluorimeterLine, QWidget* parent = nullptr,
            TrayLines trayLines = {});
  ~RunWindow() override;

  RunController& controller() { return *controller_; }
  // True from the start of a click's instrument work until the window has shown its result.
  bool working() const { return working_; }
  SpectraPlot* spectra() const { return plot_; }
  ResultsGrid* grid() const { return grid_; }

  // RunView, on the window's thread (the relay brings the worker's calls here).
  void layOut(const RunLayout& layout) override;
  void showScreen(const RunScreen& screen) override;
  void clearStatus() override;
  void showStatus(const std::string& line) override;
  void setCell(int row, int column, const std::string& text) override;
  void setCellColour(int row, int column, int paletteIndex) override;
  void setMedianRow(const std::vector<std::string>& medians) override;
  void showRow(int row) override;
  void clearSpectra() override;
  void setSpectraScale(double lowerNm, double upperNm, double yMin, double yMax) override;
  void plotPoint(double wavelengthNm, double value, int paletteIndex) override;
  void setProgress(int percent) override;
  void clearComment() override;
  void closeWindow() override;

 signals:
  // The run is over and the window is going: the main window restores its menus and shows
  // the control trend when control data exist.
  void runClosed(bool controlDataExist);

 protected:
  void closeEvent(QCloseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* buildStatusArea();
  QGroupBox* buildScanFrame();
  QGroupBox* buildDecisionFrame();
  QGroupBox* buildOkFrame();
  void keepPlacesWhenHidden();
  void buildMenus();
  void connectControls();

  // Runs a long controller call on the worker; ignored while one is under way.
  void startWork(std::function<void(RunController&)> call);
  void workFinished();
  // The checks stop painting this window's grid; from then on nothing can reach it.
  void detachChecks();
  void pushVerticalScale();
  void showChoices(const RunChoices& choices);
  void showComment(bool visible);
  void updateDecisionFrame();
  QPushButton* buttonFor(RunButton button) const;
  // The tray run's panel and TimeInfo, from the run's status as it stands now.
  void refreshTrayStatus();
  void watchStatus(const RunStatusContext& file, const std::string& path, Notifier* notifier);

  Clock& clock_;
  std::unique_ptr<SerialLine> line_;
  TrayLines trayLines_;
  std::unique_ptr<Arm> arm_;
  std::unique_ptr<Pump> pump_;
  std::unique_ptr<RunViewRelay> relay_;
  std::unique_ptr<QcRowTracker> tracker_;
  QualityChecks* qualityChecks_ = nullptr;
  std::unique_ptr<RunController> controller_;
  std::unique_ptr<TrayRunNotices> notices_;
  std::unique_ptr<InstrumentWorker> worker_;
  bool working_ = false;
  bool unloaded_ = false;
  std::vector<QString> statusLines_;
  RunScreen shown_;  // the controls as last shown

  QMenuBar* menuBar_ = nullptr;
  QMenu* options_ = nullptr;
  QAction* filename_ = nullptr;
  QAction* resetSamp_ = nullptr;
  QAction* tubeRange_ = nullptr;
  QLabel* status_ = nullptr;
  QLabel* abortMsg_ = nullptr;
  QLabel* timeInfo_ = nullptr;
  ResultsGrid* grid_ = nullptr;
  QGroupBox* syncFrame_ = nullptr;
  SpectraPlot* plot_ = nullptr;
  QLineEdit* yMin_ = nullptr;
  QLineEdit* yMax_ = nullptr;
  QLabel* minVal_ = nullptr;
  QLabel* maxVal_ = nullptr;
  QCheckBox* autoHeight_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QGroupBox* arFrame_ = nullptr;
  std::vector<QPushButton*> acceptReject_;  // Accept, Reject, Control, Blank
  QLabel* commentLabel_ = nullptr;
  QLineEdit* commentBox_ = nullptr;
  QGroupBox* okFrame_ = nullptr;
  QPushButton* ok1_ = nullptr;
  QPushButton* ok2_ = nullptr;
  TrayStatusPanel* trayPanel_ = nullptr;
  QTimer* tick_ = nullptr;
};

// Opens SAMPLING for a run the launch has prepared, on the fluorimeter's COM port from the
// preferences, with the line source's cuvette changer at each Read when it has one. The window
// is shown at once, keeps the rest of the program waiting until it closes, and deletes itself
// when it does. Nothing when the line cannot be made.
RunWindow* OpenRunWindow(QWidget* parent, const RunWindowServices& services, const RunSetup& setup,
                         LineSource& lines);

}  // namespace zorvel::ui

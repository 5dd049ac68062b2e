#pragma once

#include <QDialog>
#include <map>
#include <memory>

#include "core/checks/watercell_presenter.h"
#include "core/checks/watercell_view.h"
#include "ui/platform/instrument_worker.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace zorvel::ui {

// WATERFORM, "Watercell": the water-cell time drive. The check runs on the instrument worker
// while the window repaints; the rules live in WaterCellPresenter.
class WaterCellWindow final : public QDialog, public WaterCellView {
  Q_OBJECT
 public:
  // line: the window's own fluorimeter port (never null). lastResult: the session's last
  // result, kept by the opener so that it outlives the window.
  WaterCellWindow(AppState& state, Operator& op, Clock& clock, std::unique_ptr<SerialLine> line,
                  WaterCellResult& lastResult, QWidget* parent = nullptr);
  ~WaterCellWindow() override;

  WaterCellPresenter& presenter() { return presenter_; }
  bool working() const { return worker_.busy(); }

  void printLine(CheckArea area, int line, const std::string& text, bool clearFirst) override;
  void clearArea(CheckArea area) override;
  void showButtons(const WaterCellButtons& buttons) override;
  void setProgressVisible(bool visible) override;
  void setProgress(int percent) override;
  void close() override;
  void showStep(const std::string& text) override;
  void showStepProgress(int done, int total) override;
  void setStoppable(bool stoppable) override;

 public slots:
  void reject() override;

 private:
  void runOnWorker(bool begun);
  QLabel* area(CheckArea which) const { return which == CheckArea::Messages ? messages_ : status_; }
  void render(CheckArea which);

  std::unique_ptr<SerialLine> line_;
  WaterCellPresenter presenter_;
  InstrumentWorker worker_;
  std::map<CheckArea, std::map<int, QString>> lines_;
  QLabel* messages_ = nullptr;
  QLabel* status_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QPushButton* start_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QPushButton* rerun_ = nullptr;
  QPushButton* ok_ = nullptr;
  class SequenceBar* steps_ = nullptr;
};

// Opens the water-cell window modally on the fluorimeter's line and returns when it closes.
void RunWaterCellWindow(AppState& state, Operator& op, Clock& clock,
                        std::unique_ptr<SerialLine> line, WaterCellResult& lastResult,
                        QWidget* parent);

}  // namespace zorvel::ui

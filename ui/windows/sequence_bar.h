#pragma once

#include <QWidget>
#include <functional>
#include <string>

class QLabel;
class QProgressBar;
class QPushButton;

namespace zorvel::ui {

// The line under a window that runs arm and pump work: the step under way (and at the end how
// the work ended), steps done of steps, and Stop while the work runs.
class SequenceBar final : public QWidget {
  Q_OBJECT
 public:
  explicit SequenceBar(std::function<void()> stop, QWidget* parent = nullptr);
  void setRunning(bool running);
  void showStep(const std::string& text);
  void showProgress(int done, int total);
  // Where the window has a bar of its own for part of the work.
  void hideProgress();

 private:
  QLabel* step_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QPushButton* stop_ = nullptr;
};

}  // namespace zorvel::ui

#pragma once

#include <QGroupBox>

#include "core/run/tray_status_lines.h"

class QLabel;
class QProgressBar;

namespace zorvel::ui {

// The run window's account of a tray run: tube n of N with a progress bar, the step under way,
// a pause or abort asked for, and the alerts logged so far. Hidden when no tray run is under
// way.
class TrayStatusPanel final : public QGroupBox {
  Q_OBJECT
 public:
  explicit TrayStatusPanel(QWidget* parent = nullptr);
  void show(const TrayStatusLines& lines);

 private:
  QLabel* tube_ = nullptr;
  QLabel* step_ = nullptr;
  QLabel* request_ = nullptr;
  QLabel* alerts_ = nullptr;
  QProgressBar* progress_ = nullptr;
};

}  // namespace zorvel::ui

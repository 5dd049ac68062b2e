#pragma once

#include <QDialog>

namespace zorvel::ui {

// Shown once, modally and centred, when the main window first appears.
class DisclaimerDialog final : public QDialog {
  Q_OBJECT
 public:
  explicit DisclaimerDialog(QWidget* parent = nullptr);
  static QString text();
};

}  // namespace zorvel::ui

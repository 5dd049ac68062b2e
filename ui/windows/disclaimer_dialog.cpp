#include "ui/windows/disclaimer_dialog.h"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace zorvel::ui {

QString DisclaimerDialog::text() {
  return "ZORVEL records raw fluorescence intensities as the instruments report them. It "
         "computes no dye amounts and makes no diagnosis.\n\n"
         "Check the fluorimeter with the water-cell check before each day's work, verify every "
         "method before you run it, and review the data files before they are used in any "
         "analysis. The laboratory remains responsible for the results it reports.";
}

DisclaimerDialog::DisclaimerDialog(QWidget* parent) : QDialog(parent) {
  setObjectName("DISCLAIMER");
  setWindowTitle("ZORVEL");
  setModal(true);
  auto* label = new QLabel(text());
  label->setObjectName("Disclaimer_Label");
  label->setWordWrap(true);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
  buttons->button(QDialogButtonBox::Ok)->setObjectName("OK");
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label);
  layout->addWidget(buttons);
  resize(460, 200);
  if (const QScreen* screen = QGuiApplication::primaryScreen()) {
    const QRect area = screen->geometry();
    move((area.width() - width()) / 2, (area.height() - height()) / 2);
  }
}

}  // namespace zorvel::ui

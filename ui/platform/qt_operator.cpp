#include "ui/platform/qt_operator.h"

#include <QApplication>
#include <QCoreApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>

#include "ui/platform/gui_thread.h"

namespace zorvel::ui {

namespace {

QMessageBox::Icon qtIcon(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::Critical:
      return QMessageBox::Critical;
    case BoxIcon::Question:
      return QMessageBox::Question;
    case BoxIcon::Exclamation:
      return QMessageBox::Warning;
    case BoxIcon::Information:
      return QMessageBox::Information;
    case BoxIcon::None:
      break;
  }
  return QMessageBox::NoIcon;
}

struct ButtonCode {
  QMessageBox::StandardButton button;
  int code;
};

std::vector<ButtonCode> buttonsOf(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::Ok:
      return {{QMessageBox::Ok, answer::kOk}};
    case BoxButtons::OkCancel:
      return {{QMessageBox::Ok, answer::kOk}, {QMessageBox::Cancel, answer::kCancel}};
    case BoxButtons::AbortRetryIgnore:
      return {{QMessageBox::Abort, answer::kAbort},
              {QMessageBox::Retry, answer::kRetry},
              {QMessageBox::Ignore, answer::kIgnore}};
    case BoxButtons::YesNoCancel:
      return {{QMessageBox::Yes, answer::kYes},
              {QMessageBox::No, answer::kNo},
              {QMessageBox::Cancel, answer::kCancel}};
    case BoxButtons::YesNo:
      return {{QMessageBox::Yes, answer::kYes}, {QMessageBox::No, answer::kNo}};
    case BoxButtons::RetryCancel:
      return {{QMessageBox::Retry, answer::kRetry}, {QMessageBox::Cancel, answer::kCancel}};
  }
  return {{QMessageBox::Ok, answer::kOk}};
}

}  // namespace

QString qtFilter(const std::string& filter) {
  const QStringList parts = QString::fromStdString(filter).split('|');
  QStringList entries;
  for (int i = 0; i + 1 < parts.size(); i += 2) {
    QString patterns = parts[i + 1];
    patterns.replace(';', ' ');
    patterns.replace("*.*", "*");
    QString caption = parts[i];
    const int open = caption.indexOf('(');
    if (open >= 0) caption = caption.left(open).trimmed();
    entries << caption + " (" + patterns + ")";
  }
  return entries.join(";;");
}

// Message texts break lines with CR (or CR LF), as the program's messages are written.
QString displayText(const std::string& text) {
  QString shown = QString::fromStdString(text);
  shown.replace("\r\n", "\n");
  shown.replace('\r', '\n');
  return shown;
}

int QtOperator::messageBox(const MessageBoxRequest& box) {
  return onGuiThread([&]() -> int {
    QMessageBox dialog(qtIcon(box.icon), QString::fromStdString(box.title), displayText(box.text),
                       QMessageBox::NoButton, parent_);
    dialog.setObjectName("MessageBox");
    const auto buttons = buttonsOf(box.buttons);
    for (const auto& b : buttons) dialog.addButton(b.button);
    dialog.setDefaultButton(buttons.front().button);
    const int pressed = dialog.exec();
    for (const auto& b : buttons) {
      if (pressed == b.button) return b.code;
    }
    // Closed by its close box: the answer a cancel button would give, else the only button.
    return buttons.size() == 1 ? buttons.front().code : answer::kCancel;
  });
}

std::string QtOperator::inputBox(const std::string& prompt, const std::string& title,
                                 const std::string& defaultText) {
  return onGuiThread([&]() -> std::string {
    bool ok = false;
    const QString text =
        QInputDialog::getText(parent_, QString::fromStdString(title), displayText(prompt),
                              QLineEdit::Normal, QString::fromStdString(defaultText), &ok);
    return ok ? text.toStdString() : std::string();
  });
}

std::string QtOperator::fileDialog(const FileDialogRequest& request) {
  return onGuiThread([&]() -> std::string {
    QFileDialog dialog(parent_, QString::fromStdString(request.title),
                       QString::fromStdString(request.initialDirectory), qtFilter(request.filter));
    // A name typed without an extension gets it in lower case, as Linux files are named; one
    // the operator typed is kept as typed.
    dialog.setDefaultSuffix(
        QString::fromStdString(request.defaultExtension).section(';', 0, 0).toLower());
    const bool open = request.action == FileDialogAction::Open;
    dialog.setAcceptMode(open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(open && (request.flags & 4096) ? QFileDialog::ExistingFile
                                                      : QFileDialog::AnyFile);
    if (!open && !(request.flags & 2)) dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return dialog.selectedFiles().front().toStdString();
  });
}

void QtOperator::beep() {
  onGuiThread([] { QApplication::beep(); });
}

void QtOperator::setBusy(bool busy) {
  onGuiThread([busy] {
    if (busy) {
      QApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
      QApplication::restoreOverrideCursor();
    }
  });
}

void QtOperator::endProgram(int exitCode) {
  ended_ = true;
  exitCode_ = exitCode;
  onGuiThread([exitCode] {
    // Leave the event loop once the current handler has returned.
    QTimer::singleShot(0, qApp, [exitCode] { QCoreApplication::exit(exitCode); });
  });
}

}  // namespace zorvel::ui

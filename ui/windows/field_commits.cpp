#include "ui/windows/field_commits.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

#include "ui/windows/naming_operator.h"

namespace zorvel::ui {

FieldCommits::FieldCommits(QObject* parent, NamingOperator* naming)
    : QObject(parent), naming_(naming) {}

void FieldCommits::add(QLineEdit* box, const QString& name, Commit commit, InForce inForce) {
  add(
      box, [name] { return name; }, std::move(commit), std::move(inForce));
}

void FieldCommits::add(QLineEdit* box, Name name, Commit commit, InForce inForce) {
  fields_[box] = Field{std::move(name), std::move(commit), std::move(inForce), box->text()};
  box->installEventFilter(this);
  // Text set by the program is the value in force; text typed by the operator is not, yet.
  connect(box, &QLineEdit::textChanged, this, [this, box](const QString& text) {
    const auto found = fields_.find(box);
    if (found != fields_.end() && !box->isModified()) found->second.shown = text;
  });
  connect(box, &QObject::destroyed, this,
          [this, box] { fields_.erase(static_cast<QLineEdit*>(box)); });
}

bool FieldCommits::commit(QLineEdit* box) {
  const auto found = fields_.find(box);
  if (found == fields_.end() || !box->isModified() || committing_) return true;
  Field& field = found->second;
  committing_ = true;
  if (naming_ != nullptr) naming_->setSubject(field.name().toStdString());
  const bool accepted = field.commit(box->text().toStdString());
  if (naming_ != nullptr) naming_->setSubject({});
  committing_ = false;
  if (accepted) {
    box->setModified(false);
    field.shown = box->text();
    return true;
  }
  box->setText(field.inForce ? field.inForce() : field.shown);
  box->setFocus(Qt::OtherFocusReason);
  box->selectAll();
  return false;
}

bool FieldCommits::settle() {
  // The focused box first: it is the one being typed in.
  if (auto* focused = qobject_cast<QLineEdit*>(QApplication::focusWidget())) {
    if (!commit(focused)) return false;
  }
  std::vector<QLineEdit*> boxes;
  for (const auto& [box, field] : fields_) boxes.push_back(box);
  for (QLineEdit* box : boxes) {
    if (!commit(box)) return false;
  }
  return true;
}

void FieldCommits::onClick(QAbstractButton* button, std::function<void()> action) {
  connect(button, &QAbstractButton::clicked, this, [this, action = std::move(action)] {
    if (settle()) action();
  });
}

void FieldCommits::restoreFocus(QWidget* before) {
  QWidget* target = before;
  if ((target == nullptr || qobject_cast<QAbstractButton*>(target) != nullptr) && lastUsed_)
    target = lastUsed_;
  if (target == nullptr || !target->isEnabled() || !target->isVisible()) return;
  target->setFocus(Qt::OtherFocusReason);
  if (auto* box = qobject_cast<QLineEdit*>(target)) box->selectAll();
}

bool FieldCommits::eventFilter(QObject* watched, QEvent* event) {
  auto* box = qobject_cast<QLineEdit*>(watched);
  if (box == nullptr || fields_.count(box) == 0) return QObject::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::FocusIn:
      lastUsed_ = box;
      if (static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason) {
        // After the press has placed the cursor, which would undo a selection made now.
        QTimer::singleShot(0, box, [box] { box->selectAll(); });
      }
      break;
    case QEvent::FocusOut: {
      const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
      // A message box or another window taking the focus is no commit; the operator has not
      // left the box. The commit waits until the press that moved the focus is handled, so a
      // button pressed meanwhile settles the box itself and a refusal never leaves it down.
      if (reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason) break;
      QTimer::singleShot(0, this, [this, guarded = QPointer<QLineEdit>(box)] {
        if (guarded) commit(guarded);
      });
      break;
    }
    case QEvent::KeyPress: {
      const int key = static_cast<QKeyEvent*>(event)->key();
      // A refused entry keeps Return from also pressing the dialog's default button.
      if ((key == Qt::Key_Return || key == Qt::Key_Enter) && (!commit(box) || returnStays_)) {
        return true;
      }
      break;
    }
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace zorvel::ui

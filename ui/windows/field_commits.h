#pragma once

#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>
#include <map>
#include <string>

class QAbstractButton;
class QWidget;

namespace zorvel::ui {

class NamingOperator;

// How every window takes what is typed into its text boxes: an entry is checked when it is
// committed (the box is left, Return is pressed in it, or a button that uses it is pressed),
// never at each keystroke, so "2." or "-" on the way to a number is no error. A refused entry
// leaves the box showing the value in force, its text selected and the focus in it. Clicking
// into a box selects its text, as tabbing into it does.
class FieldCommits final : public QObject {
  Q_OBJECT
 public:
  // Takes the committed text; false when the value is refused (after saying why).
  using Commit = std::function<bool(const std::string& text)>;
  // The text of the value in force, shown again after a refusal. Without one the box goes back
  // to the text it showed before the operator began typing.
  using InForce = std::function<QString()>;
  // The box's name when it depends on what the box shows at the time (a row of a page).
  using Name = std::function<QString()>;

  // Messages shown during a commit start with the box's name when `naming` is given.
  explicit FieldCommits(QObject* parent, NamingOperator* naming = nullptr);

  // `name` is the box's caption as the operator sees it ("Ending Tube:").
  void add(QLineEdit* box, const QString& name, Commit commit, InForce inForce = {});
  void add(QLineEdit* box, Name name, Commit commit, InForce inForce = {});
  // Commits every box still holding an uncommitted entry; false when one was refused, so the
  // action that asked must do nothing.
  bool settle();
  // Connects a button: on a click the boxes are settled first, and `action` runs only when
  // nothing was refused.
  void onClick(QAbstractButton* button, std::function<void()> action);
  // Return then only takes the box's entry, and never also presses the dialog's default button:
  // for windows whose boxes set up work that their default button would end.
  void setReturnStaysInBox(bool stays) { returnStays_ = stays; }
  // The box the operator used last, for the focus to go back to after a button's work.
  QLineEdit* lastUsed() const { return lastUsed_; }
  // Puts the focus back where it was before a button's work: into the box used last when the
  // button itself had it, else onto `before`.
  void restoreFocus(QWidget* before);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Field {
    Name name;
    Commit commit;
    InForce inForce;
    QString shown;  // the text before the operator's typing
  };
  bool returnStays_ = false;
  bool commit(QLineEdit* box);

  NamingOperator* naming_;
  std::map<QLineEdit*, Field> fields_;
  QPointer<QLineEdit> lastUsed_;
  bool committing_ = false;
};

}  // namespace zorvel::ui

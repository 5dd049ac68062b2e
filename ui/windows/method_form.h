#pragma once

#include <QWidget>
#include <map>
#include <vector>

#include "core/method/method_editor.h"

class QButtonGroup;
class QFormLayout;
class QLayout;
class QLabel;
class QPushButton;

namespace zorvel::ui {

class FieldCommits;
class NamingOperator;

// The method editor's controls on METHODFORM: every field of the method with its label, the
// option groups in their frames, "&Edit Colors" and "AS Setup". The rules live in
// MethodEditor; this widget shows what it is told and hands every change over.
class MethodForm final : public QWidget, public MethodEditorView {
  Q_OBJECT
 public:
  // Messages about a box's entry name the box through `naming`, when given.
  explicit MethodForm(MethodEditor& editor, NamingOperator* naming = nullptr,
                      QWidget* parent = nullptr);

  // The form's boxes, committed before any button that uses them acts.
  FieldCommits& commits() { return *commits_; }

  // The main window's controls the editor speaks of: "&Save As", OK, the method-file label and
  // the tray-file label with its caption.
  void attachWindowControls(QPushButton* save, QPushButton* ok, QLabel* methodFile,
                            QLabel* trayCaption, QLabel* trayLabel);
  // Watches the keys of every control under `window` for the hidden panel's toggles.
  void watchKeys(QWidget* window);

  void showText(MethodControl box, const std::string& text) override;
  std::string text(MethodControl box) const override;
  void selectText(MethodControl box) override;
  void showOption(MethodControl group, int index) override;
  void setControlVisible(MethodControl control, bool visible) override;
  void setControlEnabled(MethodControl control, bool enabled) override;
  void focus(MethodControl control) override;
  void setDefaultButton(MethodControl button) override;
  void setQXPanelVisible(bool visible) override;
  void showMethodFile(const std::string& text) override;
  void showColourWindow() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* textBox(MethodControl box, const char* name);
  QLabel* caption(MethodControl box, const char* text);
  void addField(QFormLayout* form, const char* text, MethodControl box);
  QWidget* optionGroup(MethodControl group, const QString& caption,
                       const std::vector<std::pair<int, const char*>>& options,
                       Qt::Orientation orientation = Qt::Vertical);
  QWidget* checkBox(MethodControl box, const char* caption);
  QWidget* button(MethodControl control, const char* caption);
  QWidget* buildFieldsColumn();
  QWidget* buildScanColumn();
  QWidget* buildOptionsColumn();
  QLayout* buildChoicesRow();
  MethodControl controlOf(const QObject* widget) const;

  MethodEditor& editor_;
  NamingOperator* naming_;
  FieldCommits* commits_ = nullptr;
  std::map<MethodControl, QWidget*> widgets_;
  std::map<MethodControl, QButtonGroup*> groups_;
  std::map<MethodControl, std::vector<QLabel*>> captions_;
  QWidget* qxPanel_ = nullptr;
  QLabel* methodFile_ = nullptr;
  QLabel* trayCaption_ = nullptr;
  QLabel* trayLabel_ = nullptr;
};

}  // namespace zorvel::ui

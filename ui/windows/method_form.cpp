#include "ui/windows/method_form.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/windows/colour_window.h"
#include "ui/windows/field_commits.h"
#include "ui/windows/option_tab_stops.h"

namespace zorvel::ui {

namespace {

using C = MethodControl;

QString name(MethodControl control) {
  const std::string_view n = ControlName(control);
  return QString::fromLatin1(n.data(), static_cast<int>(n.size()));
}

QGroupBox* frame(MethodControl control, const QString& caption) {
  auto* box = new QGroupBox(caption);
  box->setObjectName(name(control));
  return box;
}

}  // namespace

MethodForm::MethodForm(MethodEditor& editor, NamingOperator* naming, QWidget* parent)
    : QWidget(parent), editor_(editor), naming_(naming), commits_(new FieldCommits(this, naming)) {
  setObjectName("MethodEditor");
  // Three columns over one row of the small choices, so the whole main window fits a
  // 1024 x 768 screen.
  auto* columns = new QHBoxLayout;
  columns->addWidget(buildFieldsColumn(), 0, Qt::AlignTop);
  columns->addWidget(buildScanColumn(), 0, Qt::AlignTop);
  columns->addWidget(buildOptionsColumn(), 0, Qt::AlignTop);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(columns);
  layout->addLayout(buildChoicesRow());
  layout->addStretch();
  KeepTabOnCheckedOptions(this);
}

QWidget* MethodForm::textBox(MethodControl box, const char* caption) {
  auto* edit = new QLineEdit;
  edit->setObjectName(name(box));
  widgets_[box] = edit;
  commits_->add(
      edit, caption,
      [this, box](const std::string& typed) {
        const QByteArray latin = QString::fromStdString(typed).toLatin1();
        return editor_.textCommitted(box, latin.toStdString());
      },
      [this, box] { return QString::fromLatin1(editor_.textOf(box).c_str()); });
  edit->installEventFilter(this);
  return edit;
}

QLabel* MethodForm::caption(MethodControl box, const char* text) {
  auto* label = new QLabel(text);
  captions_[box].push_back(label);
  return label;
}

void MethodForm::addField(QFormLayout* form, const char* text, MethodControl box) {
  form->addRow(caption(box, text), textBox(box, text));
}

QWidget* MethodForm::optionGroup(MethodControl group, const QString& caption,
                                 const std::vector<std::pair<int, const char*>>& options,
                                 Qt::Orientation orientation) {
  const std::map<MethodControl, MethodControl> frames = {{C::ScanType, C::STFrame},
                                                         {C::Filter_grp, C::EFFrame},
                                                         {C::Voltage_grp, C::PMTFrame},
                                                         {C::FileType, C::OFFrame},
                                                         {C::Delivery, C::DMFrame}};
  QGroupBox* box = frame(frames.at(group), caption);
  widgets_[frames.at(group)] = box;
  auto* buttons = new QButtonGroup(this);
  buttons->setObjectName(name(group));
  groups_[group] = buttons;
  QBoxLayout* line = orientation == Qt::Vertical ? static_cast<QBoxLayout*>(new QVBoxLayout(box))
                                                 : new QHBoxLayout(box);
  for (const auto& [index, text] : options) {
    auto* option = new QRadioButton(text);
    option->setObjectName(name(group) + "_" + QString::number(index));
    buttons->addButton(option, index);
    line->addWidget(option);
  }
  connect(buttons, &QButtonGroup::idClicked, this,
          [this, group](int index) { editor_.optionClicked(group, index); });
  return box;
}

QWidget* MethodForm::checkBox(MethodControl box, const char* caption) {
  auto* check = new QCheckBox(caption);
  check->setObjectName(name(box));
  widgets_[box] = check;
  connect(check, &QCheckBox::toggled, this,
          [this, box](bool on) { editor_.checkChanged(box, on); });
  return check;
}

QWidget* MethodForm::button(MethodControl control, const char* caption) {
  auto* push = new QPushButton(caption);
  push->setObjectName(name(control));
  widgets_[control] = push;
  return push;
}

QWidget* MethodForm::buildFieldsColumn() {
  auto* column = new QWidget;
  auto* form = new QFormLayout(column);
  form->setContentsMargins(0, 0, 0, 0);
  addField(form, "Analyst:", C::Op_Box);
  addField(form, "Sample Id:", C::sampid_box);
  addField(form, "Amount of solvent:", C::AmtSolv_Box);
  addField(form, "Starting Number:", C::swell_box);
  addField(form, "# Colors:", C::nColors_Box);
  qxPanel_ = new QWidget;
  qxPanel_->setObjectName("QXOnly1");
  auto* qx = new QFormLayout(qxPanel_);
  qx->setContentsMargins(0, 0, 0, 0);
  addField(qx, "Number of Reps:", C::NumReps_Box);
  qxPanel_->setVisible(false);
  form->addRow(qxPanel_);

  auto* speed = new QHBoxLayout;
  speed->addWidget(textBox(C::ScnSpd_Box, "Scan Speed:"));
  speed->addWidget(caption(C::ScnSpd_Box, "nm/min."));
  form->addRow(caption(C::ScnSpd_Box, "Scan Speed:"), speed);
  // The hidden panel's caption column is as wide as the form's, so that its box lines up with
  // the others when it is shown.
  std::vector<QLabel*> rowCaptions;
  for (C box :
       {C::Op_Box, C::sampid_box, C::AmtSolv_Box, C::swell_box, C::nColors_Box, C::NumReps_Box})
    rowCaptions.push_back(captions_[box].front());
  rowCaptions.push_back(captions_[C::ScnSpd_Box].back());
  int widest = 0;
  for (QLabel* label : rowCaptions) widest = std::max(widest, label->sizeHint().width());
  for (QLabel* label : rowCaptions) label->setMinimumWidth(widest);

  auto* readTimes = new QGroupBox("Read Time (.1-100 sec)");
  readTimes->setObjectName("RTFrame");
  auto* times = new QFormLayout(readTimes);
  addField(times, "Samples:", C::RdTime_Box);
  addField(times, "Pures:", C::RdTimePures_Box);
  form->addRow(readTimes);
  return column;
}

QWidget* MethodForm::buildScanColumn() {
  auto* column = new QWidget;
  auto* layout = new QVBoxLayout(column);
  layout->setContentsMargins(0, 0, 0, 0);
  QGroupBox* synch = frame(C::Synch_Box, "Synchronous Scan");
  widgets_[C::Synch_Box] = synch;
  auto* scan = new QFormLayout(synch);
  addField(scan, "Excitation (2.5-15):", C::ExSlSync_Box);
  addField(scan, "Emission (2.5-20):", C::EmSlSync_Box);
  addField(scan, "Lower Limit (Ex):", C::ScanLL_Box);
  addField(scan, "Upper Limit (Ex):", C::ScanUL_Box);
  addField(scan, "Offset [Em-Ex]:", C::ScanOff_Box);
  addField(scan, "Data Interval:", C::ScanDInt_Box);
  layout->addWidget(synch);
  layout->addWidget(optionGroup(C::ScanType, "Scan Type",
                                {{1, "Fixed Wavelength"}, {2, "Synchronous"}, {3, "Both"}}));
  return column;
}

QWidget* MethodForm::buildOptionsColumn() {
  auto* column = new QWidget;
  auto* layout = new QVBoxLayout(column);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(optionGroup(C::Filter_grp, "Emission Filter",
                                {{1, "290 nm cutoff"},
                                 {2, "350 nm cutoff"},
                                 {3, "390 nm cutoff"},
                                 {4, "430 nm cutoff"},
                                 {5, "530 nm cutoff"},
                                 {7, "None"},
                                 {8, "1% transmittance attenuator"}}));
  QWidget* pmt = optionGroup(C::Voltage_grp, "PMT Voltage", {{1, "Default"}, {2, "Selected"}});
  pmt->layout()->addWidget(textBox(C::PMTVoltage, "PMT Voltage"));
  layout->addWidget(pmt);
  return column;
}

QLayout* MethodForm::buildChoicesRow() {
  auto* row = new QHBoxLayout;
  row->addWidget(optionGroup(C::FileType, "File Format", {{1, "DOS/Windows"}, {2, "Macintosh"}},
                             Qt::Horizontal));
  row->addWidget(optionGroup(C::Delivery, "Delivery Method", {{1, "Cuvette"}, {2, "AutoSampler"}},
                             Qt::Horizontal));
  auto* checks = new QVBoxLayout;
  checks->addWidget(checkBox(C::Spillover_Box, "Generate Spillover Matrix"));
  checks->addWidget(checkBox(C::UsePrn_Box, "Print Results"));
  row->addLayout(checks);
  auto* buttons = new QVBoxLayout;
  buttons->addWidget(button(C::Colors_Button, "&Edit Colors"));
  buttons->addWidget(button(C::ASSetup, "&AS Setup"));
  row->addLayout(buttons);
  commits_->onClick(static_cast<QPushButton*>(widgets_[C::Colors_Button]),
                    [this] { editor_.editColours(); });
  commits_->onClick(static_cast<QPushButton*>(widgets_[C::ASSetup]),
                    [this] { editor_.autosamplerSetup(); });
  widgets_[C::ASSetup]->setEnabled(false);
  return row;
}

void MethodForm::attachWindowControls(QPushButton* save, QPushButton* ok, QLabel* methodFile,
                                      QLabel* trayCaption, QLabel* trayLabel) {
  widgets_[C::Save] = save;
  widgets_[C::OKButton] = ok;
  methodFile_ = methodFile;
  trayCaption_ = trayCaption;
  trayLabel_ = trayLabel;
}

void MethodForm::watchKeys(QWidget* window) {
  window->installEventFilter(this);
  for (QWidget* child : window->findChildren<QWidget*>()) child->installEventFilter(this);
}

MethodControl MethodForm::controlOf(const QObject* widget) const {
  for (const auto& [control, w] : widgets_) {
    if (w == widget) return control;
  }
  return C::Other;
}

bool MethodForm::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn && qobject_cast<QLineEdit*>(watched) != nullptr) {
    editor_.focused(controlOf(watched));
  } else if (event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const MethodControl focus = controlOf(watched);
    const Qt::KeyboardModifiers m = key->modifiers();
    const KeyModifiers held{(m & Qt::ControlModifier) != 0, (m & Qt::AltModifier) != 0,
                            (m & Qt::ShiftModifier) != 0};
    const EditorKey which = key->key() == Qt::Key_F4    ? EditorKey::F4
                            : key->key() == Qt::Key_F12 ? EditorKey::F12
                                                        : EditorKey::Other;
    if (editor_.keyPressed(which, held, focus)) return true;
    if (editor_.keyTyped(key->text().toLatin1().toStdString(), focus)) return true;
  }
  return QWidget::eventFilter(watched, event);
}

void MethodForm::showText(MethodControl box, const std::string& t) {
  if (auto* edit = qobject_cast<QLineEdit*>(widgets_[box])) {
    edit->setText(QString::fromLatin1(t.data(), static_cast<int>(t.size())));
    edit->setCursorPosition(0);  // a long text shown from its start, not from its end
  }
}

std::string MethodForm::text(MethodControl box) const {
  const auto it = widgets_.find(box);
  const auto* edit = it == widgets_.end() ? nullptr : qobject_cast<QLineEdit*>(it->second);
  return edit == nullptr ? std::string() : edit->text().toLatin1().toStdString();
}

void MethodForm::selectText(MethodControl box) {
  if (auto* edit = qobject_cast<QLineEdit*>(widgets_[box])) edit->selectAll();
}

void MethodForm::showOption(MethodControl group, int index) {
  if (auto* check = qobject_cast<QCheckBox*>(widgets_[group])) {
    check->setChecked(index != 0);
    return;
  }
  QButtonGroup* buttons = groups_.at(group);
  if (QAbstractButton* option = buttons->button(index)) {
    option->setChecked(true);
    return;
  }
  // A code no option stands for: none chosen.
  buttons->setExclusive(false);
  for (QAbstractButton* option : buttons->buttons()) option->setChecked(false);
  buttons->setExclusive(true);
}

void MethodForm::setControlVisible(MethodControl control, bool visible) {
  if (control == C::TrayFile) {
    if (trayCaption_ != nullptr) trayCaption_->setVisible(visible);
    if (trayLabel_ != nullptr) trayLabel_->setVisible(visible);
    return;
  }
  if (QWidget* w = widgets_[control]) w->setVisible(visible);
}

void MethodForm::setControlEnabled(MethodControl control, bool enabled) {
  if (QWidget* w = widgets_[control]) w->setEnabled(enabled);
  // A box's captions look as it does, so a disabled field does not look editable.
  for (QLabel* label : captions_[control]) label->setEnabled(enabled);
}

void MethodForm::focus(MethodControl control) {
  if (QWidget* w = widgets_[control]) w->setFocus(Qt::OtherFocusReason);
}

void MethodForm::setDefaultButton(MethodControl control) {
  for (C each : {C::Save, C::OKButton}) {
    if (auto* push = qobject_cast<QPushButton*>(widgets_[each])) push->setDefault(each == control);
  }
}

void MethodForm::setQXPanelVisible(bool visible) {
  qxPanel_->setVisible(visible);
}

void MethodForm::showMethodFile(const std::string& t) {
  if (methodFile_ != nullptr)
    methodFile_->setText(QString::fromLatin1(t.data(), static_cast<int>(t.size())));
}

void MethodForm::showColourWindow() {
  ColourWindow window(editor_.colours(), this, naming_);
  editor_.colourWindowOpened(window);
  window.exec();
}

}  // namespace zorvel::ui

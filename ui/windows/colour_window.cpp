#include "ui/windows/colour_window.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/windows/field_commits.h"

namespace zorvel::ui {

namespace {

constexpr const char* kBoxNames[] = {"ExWl_grp", "EmWl_grp", "ExSl_grp", "EmSl_grp"};
constexpr const char* kBoxCaptions[] = {"Exitation wavelength", "Emission wavelength",
                                        "Exitation slit", "Emission slit"};
constexpr PairField kFields[] = {PairField::ExWl, PairField::EmWl, PairField::ExSl,
                                 PairField::EmSl};

QPushButton* pushButton(const char* caption, const char* objectName) {
  auto* button = new QPushButton(caption);
  button->setObjectName(objectName);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

ColourWindow::ColourWindow(ColourPresenter& presenter, QWidget* parent, NamingOperator* naming)
    : QDialog(parent), presenter_(presenter), commits_(new FieldCommits(this, naming)) {
  setObjectName("COLORS");
  setWindowTitle("Colors");
  setModal(true);
  auto* grid = new QGridLayout;
  const auto caption = [grid](const char* text, const char* objectName, int column) {
    auto* label = new QLabel(text);
    label->setObjectName(objectName);
    label->setAlignment(Qt::AlignCenter);
    grid->addWidget(label, 1, column);
  };
  grid->addWidget(new QLabel("Wavelengths"), 0, 1, 1, 2, Qt::AlignCenter);
  grid->addWidget(new QLabel("Slits"), 0, 3, 1, 2, Qt::AlignCenter);
  caption("Exitation", "ExWlCaption", 1);
  caption("Emission", "EmWlCaption", 2);
  caption("Exitation", "ExSlCaption", 3);
  caption("Emission", "EmSlCaption", 4);
  grid->addWidget(new QLabel("Color"), 1, 5, Qt::AlignCenter);
  const AppState& state = presenter.state();
  for (int slot = 1; slot <= kColourRowsPerPage; ++slot) {
    Row& row = rows_.at(static_cast<std::size_t>(slot));
    row.label = new QLabel;
    row.label->setObjectName(QString("CLabel_grp_%1").arg(slot));
    grid->addWidget(row.label, slot + 1, 0);
    for (int column = 0; column < 4; ++column) {
      auto* edit = new QLineEdit;
      edit->setObjectName(QString("%1_%2").arg(kBoxNames[column]).arg(slot));
      row.boxes.at(static_cast<std::size_t>(column)) = edit;
      grid->addWidget(edit, slot + 1, column + 1);
      const PairField field = kFields[column];
      QLabel* rowLabel = row.label;
      commits_->add(
          edit,
          [rowLabel, column] {
            return QString("Row %1, %2").arg(rowLabel->text(), kBoxCaptions[column]);
          },
          [this, slot, field](const std::string& typed) {
            const QByteArray latin = QString::fromStdString(typed).toLatin1();
            return presenter_.boxChanged(slot, field, latin.toStdString());
          });
    }
    row.colours = new QComboBox;
    row.colours->setObjectName(QString("CList_grp_%1").arg(slot));
    for (int colour = 0; colour < 14; ++colour)
      row.colours->addItem(
          QString::fromStdString(state.ColourNames.at(static_cast<std::size_t>(colour))));
    grid->addWidget(row.colours, slot + 1, 5);
  }
  previous_ = pushButton("&Prev 15", "Prev15");
  next_ = pushButton("&Next 15", "Next15");
  QPushButton* ok = pushButton("&OK", "OK");
  // Return in the window confirms, as in every dialog.
  ok->setDefault(true);
  QPushButton* cancel = pushButton("&Cancel", "Cancel");
  commits_->onClick(previous_, [this] { presenter_.previousPage(); });
  commits_->onClick(next_, [this] { presenter_.nextPage(); });
  commits_->onClick(ok, [this] { presenter_.confirm(); });
  connect(cancel, &QPushButton::clicked, this, [this] { presenter_.cancel(); });
  auto* buttons = new QHBoxLayout;
  for (QPushButton* b : {previous_, next_, ok, cancel}) buttons->addWidget(b);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(grid);
  layout->addLayout(buttons);
}

QLineEdit* ColourWindow::box(int slot, PairField field) const {
  return rows_.at(static_cast<std::size_t>(slot)).boxes.at(static_cast<std::size_t>(field) - 1);
}

void ColourWindow::setRowVisible(int slot, bool visible) {
  Row& row = rows_.at(static_cast<std::size_t>(slot));
  row.label->setVisible(visible);
  for (QLineEdit* edit : row.boxes) edit->setVisible(visible);
  row.colours->setVisible(visible);
}

void ColourWindow::setRowLabel(int slot, const std::string& text) {
  rows_.at(static_cast<std::size_t>(slot)).label->setText(QString::fromStdString(text));
}

void ColourWindow::setBoxText(int slot, PairField field, const std::string& text) {
  box(slot, field)->setText(QString::fromLatin1(text.data(), static_cast<int>(text.size())));
}

void ColourWindow::setColourChoice(int slot, int colourIndex) {
  rows_.at(static_cast<std::size_t>(slot)).colours->setCurrentIndex(colourIndex);
}

int ColourWindow::colourChoice(int slot) const {
  return rows_.at(static_cast<std::size_t>(slot)).colours->currentIndex();
}

void ColourWindow::selectBox(int slot, PairField field) {
  box(slot, field)->selectAll();
}

void ColourWindow::focusBox(int slot, PairField field) {
  box(slot, field)->setFocus(Qt::OtherFocusReason);
}

void ColourWindow::focusColourList(int slot) {
  rows_.at(static_cast<std::size_t>(slot)).colours->setFocus(Qt::OtherFocusReason);
}

void ColourWindow::setPagingEnabled(bool previous, bool next) {
  previous_->setEnabled(previous);
  next_->setEnabled(next);
}

void ColourWindow::close() {
  closing_ = true;
  done(QDialog::Accepted);
}

// Escape and the close box cancel, as "&Cancel" does.
void ColourWindow::reject() {
  if (closing_) {
    QDialog::reject();
    return;
  }
  presenter_.cancel();
}

}  // namespace zorvel::ui

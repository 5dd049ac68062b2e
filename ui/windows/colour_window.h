#pragma once

#include <QDialog>
#include <array>

#include "core/method/colour_presenter.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zorvel::ui {

class FieldCommits;
class NamingOperator;

// COLORS, the colour window: 15 rows of the fixed-wavelength pairs, a page at a time. The
// rules live in ColourPresenter.
class ColourWindow final : public QDialog, public ColourView {
  Q_OBJECT
 public:
  ColourWindow(ColourPresenter& presenter, QWidget* parent = nullptr,
               NamingOperator* naming = nullptr);

  void setRowVisible(int slot, bool visible) override;
  void setRowLabel(int slot, const std::string& text) override;
  void setBoxText(int slot, PairField field, const std::string& text) override;
  void setColourChoice(int slot, int colourIndex) override;
  int colourChoice(int slot) const override;
  void selectBox(int slot, PairField field) override;
  void focusBox(int slot, PairField field) override;
  void focusColourList(int slot) override;
  void setPagingEnabled(bool previous, bool next) override;
  void close() override;

 public slots:
  void reject() override;

 private:
  struct Row {
    QLabel* label = nullptr;
    std::array<QLineEdit*, 4> boxes{};
    QComboBox* colours = nullptr;
  };
  QLineEdit* box(int slot, PairField field) const;

  ColourPresenter& presenter_;
  FieldCommits* commits_ = nullptr;
  std::array<Row, kColourRowsPerPage + 1> rows_{};
  QPushButton* previous_ = nullptr;
  QPushButton* next_ = nullptr;
  bool closing_ = false;
};

}  // namespace zorvel::ui

#include "ui/windows/run_grid.h"

#include <QHeaderView>

#include "ui/windows/run_palette.h"

namespace zorvel::ui {

namespace {

// Rows the grid opens with: "Median" and room for the first readings, so that the first rows
// fill in place before the grid starts to grow and scroll.
constexpr int kInitialRows = 12;

QString fromLatin1(const std::string& text) {
  return QString::fromLatin1(text.data(), static_cast<int>(text.size()));
}

// The run's row r is the table's row r - 1: the run's row 0 is the header line.
int tableRow(int row) {
  return row - 1;
}

}  // namespace

ResultsGrid::ResultsGrid(QWidget* parent) : QTableWidget(parent) {
  setObjectName("GrdData");
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::NoSelection);
  setFocusPolicy(Qt::NoFocus);
  verticalHeader()->setVisible(false);
  horizontalHeader()->setDefaultSectionSize(64);
  setColumns({});
}

void ResultsGrid::setColumns(const std::vector<std::string>& heads) {
  clear();
  shownRow_ = 0;
  setColumnCount(static_cast<int>(heads.size()) + 1);
  setRowCount(kInitialRows);
  QStringList labels{"Sample"};
  for (const auto& head : heads) labels << fromLatin1(head);
  setHorizontalHeaderLabels(labels);
  setRowLabel(1, "Median");
}

void ResultsGrid::setMedianRow(const std::vector<std::string>& medians) {
  for (std::size_t i = 0; i < medians.size(); ++i) {
    setCell(1, static_cast<int>(i) + 1, medians[i]);
  }
}

void ResultsGrid::setRowLabel(int row, const std::string& label) {
  setCell(row, 0, label);
}

void ResultsGrid::setCell(int row, int column, const std::string& text) {
  if (QTableWidgetItem* item = cellAt(row, column)) item->setText(fromLatin1(text));
}

void ResultsGrid::setCellColour(int row, int column, int paletteIndex) {
  if (QTableWidgetItem* item = cellAt(row, column))
    item->setBackground(StandardColour(paletteIndex));
}

void ResultsGrid::showRow(int row) {
  if (row < 1) return;
  ensureRow(row);
  shownRow_ = row;
  scrollToShownRow();
}

void ResultsGrid::resizeEvent(QResizeEvent* event) {
  QTableWidget::resizeEvent(event);
  scrollToShownRow();
}

void ResultsGrid::scrollToShownRow() {
  if (shownRow_ < 1 || shownRow_ - 1 >= rowCount()) return;
  // The scroll range follows new rows and sizes only at the next layout pass: bring it up to
  // date now, or the scroll stops short of the row.
  updateGeometries();
  scrollToItem(cellAt(shownRow_, 0), QAbstractItemView::EnsureVisible);
}

QString ResultsGrid::textAt(int row, int column) const {
  if (row == 0) {
    const QTableWidgetItem* head = horizontalHeaderItem(column);
    return head != nullptr ? head->text() : QString();
  }
  const QTableWidgetItem* cell = item(tableRow(row), column);
  return cell != nullptr ? cell->text() : QString();
}

QTableWidgetItem* ResultsGrid::cellAt(int row, int column) {
  if (row < 1 || column < 0 || column >= columnCount()) return nullptr;
  ensureRow(row);
  QTableWidgetItem* cell = item(tableRow(row), column);
  if (cell == nullptr) {
    cell = new QTableWidgetItem;
    setItem(tableRow(row), column, cell);
  }
  return cell;
}

void ResultsGrid::ensureRow(int row) {
  if (tableRow(row) >= rowCount()) setRowCount(tableRow(row) + 1);
}

}  // namespace zorvel::ui

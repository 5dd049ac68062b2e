#pragma once

#include <QTableWidget>
#include <string>
#include <vector>

namespace zorvel::ui {

// GrdData, the run window's results grid. The run numbers its rows as the grid always had
// them: row 0 the heads (the table's header line here), row 1 "Median", row 2 "Sample", then
// one row per reading from row 3. Column 0 holds the row labels, columns 1..n the colours.
class ResultsGrid final : public QTableWidget {
  Q_OBJECT
 public:
  explicit ResultsGrid(QWidget* parent = nullptr);

  // "ex/em" heads of the colour columns; clears every row below them.
  void setColumns(const std::vector<std::string>& heads);
  void setMedianRow(const std::vector<std::string>& medians);
  void setRowLabel(int row, const std::string& label);
  void setCell(int row, int column, const std::string& text);
  void setCellColour(int row, int column, int paletteIndex);
  // Adds rows up to this one when needed and scrolls it into view; it stays in view when the
  // grid is made smaller (the comment box shown below it, a window resized).
  void showRow(int row);

  // The text at a row of the run's numbering (row 0 gives the heads); empty when unset.
  QString textAt(int row, int column) const;
  // Rows in the run's numbering, heads included.
  int runRows() const { return rowCount() + 1; }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QTableWidgetItem* cellAt(int row, int column);
  void ensureRow(int row);
  void scrollToShownRow();

  int shownRow_ = 0;
};

}  // namespace zorvel::ui

#include <QScrollBar>
#include <QTest>
#include <QThread>
#include <atomic>

#include <gtest/gtest.h>

#include "core/run/run_view.h"
#include "ui/platform/instrument_worker.h"
#include "ui/qt_app.h"
#include "ui/windows/run_grid.h"
#include "ui/windows/run_palette.h"
#include "ui/windows/run_spectra.h"
#include "ui/windows/run_view_relay.h"

namespace zorvel {
namespace {

// Pixels of the picture that are neither the dark field nor the grey grid lines.
int colouredPixels(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (QColor(image.pixel(x, y)).saturation() > 100) ++count;
    }
  }
  return count;
}

// Whether the colour lies on a pixel within one place of (x, y): a thick pen may straddle it.
bool colourNear(const QImage& image, int x, int y, const QColor& colour) {
  for (int dy = -1; dy <= 1; ++dy) {
    for (int dx = -1; dx <= 1; ++dx) {
      const QPoint at(x + dx, y + dy);
      if (image.rect().contains(at) && QColor(image.pixel(at)) == colour) return true;
    }
  }
  return false;
}

TEST(RunSpectra, PlotsEachPointInItsBandColourAndRescalesTheSameScan) {
  testing::qtApp();
  ui::SpectraPlot plot;
  const QSize size(200, 100);
  EXPECT_EQ(colouredPixels(plot.picture(size)), 0);

  plot.setScale(400, 600, 0, 10);
  // A rising line in light red (12) across the left half, one light green (10) point on the
  // right at the top of the scale.
  for (int i = 0; i <= 10; ++i) plot.addPoint(400 + 10 * i, i, 12);
  plot.addPoint(590, 10, 10);
  QImage image = plot.picture(size);
  // Points by default: nothing between (400, 0) and (410, 1); joined, the gap is drawn.
  EXPECT_FALSE(colourNear(image, 5, 94, ui::StandardColour(12)));
  plot.setJoined(true);
  EXPECT_TRUE(colourNear(plot.picture(size), 5, 94, ui::StandardColour(12)));
  plot.setJoined(false);
  EXPECT_TRUE(colourNear(image, 0, 99, ui::StandardColour(12)));   // (400, 0): bottom left
  EXPECT_TRUE(colourNear(image, 189, 0, ui::StandardColour(10)));  // (590, 10): top right

  // Twice the full scale puts the top point at mid height; nothing is lost.
  plot.setVerticalScale(0, 20);
  image = plot.picture(size);
  EXPECT_EQ(plot.pointCount(), 12);
  EXPECT_TRUE(colourNear(image, 189, 49, ui::StandardColour(10)));
  EXPECT_FALSE(colourNear(image, 189, 0, ui::StandardColour(10)));

  // A scale without extent must not divide by zero or lose the picture.
  plot.setScale(500, 500, 3, 3);
  EXPECT_GT(colouredPixels(plot.picture(size)), 0);
  plot.clear();
  EXPECT_EQ(colouredPixels(plot.picture(size)), 0);
}

TEST(RunGrid, RowsFollowTheRunsNumberingGrowAndScrollToTheNewest) {
  testing::qtApp();
  ui::ResultsGrid grid;
  grid.resize(300, 200);
  grid.show();
  grid.setColumns({"350/397.5", "480/520"});
  EXPECT_EQ(grid.columnCount(), 3);
  // "Sample" heads the column of sample numbers; "Median" is the only row above the readings.
  EXPECT_EQ(grid.textAt(0, 0), "Sample");
  EXPECT_EQ(grid.textAt(0, 1), "350/397.5");
  EXPECT_EQ(grid.textAt(0, 2), "480/520");
  EXPECT_EQ(grid.textAt(1, 0), "Median");
  EXPECT_EQ(grid.textAt(2, 0), "");

  grid.setMedianRow({"12.5", ""});
  grid.setRowLabel(2, "1");
  grid.setCell(2, 2, "87.5");
  grid.setCellColour(2, 2, 12);
  EXPECT_EQ(grid.textAt(1, 1), "12.5");
  EXPECT_EQ(grid.textAt(2, 0), "1");
  EXPECT_EQ(grid.textAt(2, 2), "87.5");
  EXPECT_EQ(grid.item(1, 2)->background().color(), ui::StandardColour(12));
  // Cells outside the colours are ignored rather than added.
  grid.setCell(2, 7, "x");
  EXPECT_EQ(grid.columnCount(), 3);

  grid.showRow(60);
  grid.setRowLabel(60, "59");
  QCoreApplication::processEvents();
  EXPECT_EQ(grid.runRows(), 61);
  EXPECT_GT(grid.verticalScrollBar()->value(), 0);
  const auto newestWhole = [&grid] {
    return grid.viewport()->rect().contains(grid.visualItemRect(grid.item(59, 0)));
  };
  EXPECT_TRUE(newestWhole());
  // The comment box appears below the grid while the reading waits for a decision: the grid
  // is made smaller, and the reading must still be seen whole.
  grid.resize(300, 130);
  QCoreApplication::processEvents();
  EXPECT_TRUE(newestWhole());

  // New columns start the grid again.
  grid.setColumns({"400/450"});
  EXPECT_EQ(grid.textAt(2, 0), "");
  EXPECT_EQ(grid.textAt(1, 0), "Median");
}

// Records the order and thread of the calls that reach it.
class RecordingView final : public RunView {
 public:
  void layOut(const RunLayout&) override {}
  void showScreen(const RunScreen&) override {}
  void clearStatus() override { note("clear"); }
  void showStatus(const std::string& line) override { note(line); }
  void setCell(int row, int column, const std::string& text) override {
    note(std::to_string(row) + "," + std::to_string(column) + "=" + text);
  }
  void setCellColour(int, int, int) override {}
  void setMedianRow(const std::vector<std::string>&) override {}
  void showRow(int) override {}
  void clearSpectra() override {}
  void setSpectraScale(double, double, double, double) override {}
  void plotPoint(double, double, int) override { note("point"); }
  void setProgress(int) override {}
  void clearComment() override {}
  void closeWindow() override { note("close"); }

  std::vector<std::string> calls;
  bool allOnWindowThread = true;

 private:
  void note(const std::string& call) {
    calls.push_back(call);
    allOnWindowThread = allOnWindowThread && QThread::currentThread() == qApp->thread();
  }
};

TEST(RunViewRelay, BringsWorkerCallsToTheWindowThreadInOrderAndDropsThemOnceItIsGone) {
  testing::qtApp();
  ui::InstrumentWorker worker;
  RecordingView view;
  auto window = std::make_unique<QObject>();
  ui::RunViewRelay relay(*window, view);

  relay.showStatus("direct");  // the window's own thread: at once
  EXPECT_EQ(view.calls, std::vector<std::string>{"direct"});

  std::atomic<bool> returned{false};
  worker.start([&] {
    relay.clearStatus();
    relay.showStatus("Reading Sample");
    relay.setCell(3, 1, "87.5");
    for (int i = 0; i < 200; ++i) relay.plotPoint(400 + i, i, 12);
    relay.closeWindow();
    returned = true;  // never waits for the window
  });
  ZORVEL_TRY_VERIFY(returned.load(), 2000);
  ZORVEL_TRY_COMPARE(view.calls.size(), std::size_t{205}, 2000);
  EXPECT_EQ(view.calls[1], "clear");
  EXPECT_EQ(view.calls[2], "Reading Sample");
  EXPECT_EQ(view.calls[3], "3,1=87.5");
  EXPECT_EQ(view.calls.back(), "close");
  EXPECT_TRUE(view.allOnWindowThread);

  // Calls queued for a window that is deleted before they arrive go nowhere.
  returned = false;
  worker.start([&] {
    relay.showStatus("late");
    returned = true;
  });
  // Wait without running the window thread's events, so the call is still queued.
  while (!returned.load()) QThread::yieldCurrentThread();
  window.reset();
  QCoreApplication::processEvents();
  relay.showStatus("after");
  EXPECT_EQ(view.calls.size(), 205u);
}

}  // namespace
}  // namespace zorvel

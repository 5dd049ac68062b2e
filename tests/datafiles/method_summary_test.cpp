#include "core/datafiles/method_summary.h"

#include <gtest/gtest.h>

#include "core/platform/page_printer.h"
#include "method/method_examples.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::readGolden;

TEST(MethodSummary, FixedOnlyNewSet) {
  AppState state;
  state.Method = testing::FixedCuvetteMethod();
  state.DataSet.DataSetName = "run1";
  state.DataSet.MethodFilePath = "/lab/METHODS/LIVER.MTH";
  PagePrinter printer;
  PrintMethodSummary(state, printer, true, CalendarTime{2026, 3, 7, 14, 5, 9});
  EXPECT_SAME_BYTES(readGolden("datafiles/summary_fixed_new.txt"), printer.currentText());
  // The summary starts a page of its own and leaves the document open for the result lines.
  EXPECT_EQ(printer.current().size(), 2u);
  EXPECT_TRUE(printer.current()[0].empty());
  EXPECT_TRUE(printer.documents.empty());
}

TEST(MethodSummary, BothKindsAppendingWithSlitBlankRules) {
  AppState state;
  state.Method = testing::FixedSynchCuvetteMethod();
  state.DataSet.DataSetName = "gills 2";
  state.DataSet.MethodFilePath = "/lab/METHODS/GILL.MTH";
  PagePrinter printer;
  PrintMethodSummary(state, printer, false, CalendarTime{2026, 11, 2, 8, 30, 0});
  EXPECT_SAME_BYTES(readGolden("datafiles/summary_both_appending.txt"), printer.currentText());
}

TEST(MethodSummary, ScansAloneNameOnlyTheScanFile) {
  AppState state;
  state.Method = testing::SynchAutosamplerMethod();
  state.DataSet.DataSetName = "Plate";
  PagePrinter printer;
  PrintMethodSummary(state, printer, true, CalendarTime{});
  const std::string text = printer.currentText();
  EXPECT_EQ(text.substr(0, text.find('\n')), "Base Data Filename       PLATE(.SYN, .CTL)");
  EXPECT_NE(text.find("  Delivery method        AutoSampler\n"), std::string::npos);
}

}  // namespace
}  // namespace zorvel

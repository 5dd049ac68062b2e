#include "ui/platform/qt_printer.h"

#include "ui/platform/pdf_painting.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/bytes.h"
#include "ui/qt_app.h"

namespace zorvel {
namespace {

namespace fs = std::filesystem;

TEST(QtPrinter, EachDocumentGoesToAFileOfItsOwnAndIsNamed) {
  testing::qtApp();
  const std::string dir = testing::makeTempDir("print");
  testing::writeFile(dir + "out-2.pdf", "an earlier printout");
  ui::QtPrinter printer(QString::fromStdString(dir + "out.pdf"), ui::PaintingPdfWriter());
  std::vector<std::string> written;
  printer.setFileWritten([&](const std::string& file) { written.push_back(file); });
  for (const char* line : {"first run", "second run"}) {
    printer.print(line);
    printer.endLine();
    printer.endDocument();
  }
  printer.endDocument();  // an empty document makes no file
  // An existing file is never replaced: the second document skips out-2.pdf.
  EXPECT_EQ(written, (std::vector<std::string>{dir + "out.pdf", dir + "out-3.pdf"}));
  EXPECT_GT(fs::file_size(dir + "out.pdf"), 0u);
  EXPECT_GT(fs::file_size(dir + "out-3.pdf"), 0u);
  EXPECT_EQ(testing::readFile(dir + "out-2.pdf"), "an earlier printout");
}

// The system printer takes the document as a PDF through its print command; a command that
// refuses it, or is missing, is reported and nothing waits on it.
TEST(QtPrinter, TheSystemPrinterGetsAPdfAndAFailingCommandIsReported) {
  testing::qtApp();
  const std::string dir = testing::makeTempDir("lp");
  testing::writeFile(dir + "lp", "#!/bin/sh\nhead -c 5 \"$1\" > " + dir + "queued\n");
  fs::permissions(dir + "lp", fs::perms::owner_all);
  ui::QtPrinter printer({}, ui::PaintingPdfWriter());
  std::vector<std::string> problems;
  printer.setProblemReported([&](const std::string& p) { problems.push_back(p); });
  const auto printOne = [&printer](const QString& command) {
    printer.setPrintCommand(command);
    printer.print("a result line");
    printer.endLine();
    printer.endDocument();
  };
  printOne(QString::fromStdString(dir + "lp"));
  EXPECT_TRUE(problems.empty());
  EXPECT_EQ(testing::readFile(dir + "queued"), "%PDF-");
  printOne("false");
  printOne(QString::fromStdString(dir + "no-such-command"));
  ASSERT_EQ(problems.size(), 2u);
  EXPECT_NE(std::string::npos, problems[0].find("refused it")) << problems[0];
  EXPECT_NE(std::string::npos, problems[1].find("could not be started")) << problems[1];
  EXPECT_EQ(printer.documentsSent(), 1);
}

}  // namespace
}  // namespace zorvel

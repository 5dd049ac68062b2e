#include "ui/platform/qt_printer.h"

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
  ui::QtPrinter printer(QString::fromStdString(dir + "out.pdf"));
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

}  // namespace
}  // namespace zorvel

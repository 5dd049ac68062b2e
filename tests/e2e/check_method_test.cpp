// zorvel-run --check-method: the whole-method checks over method files prepared elsewhere.

#include <gtest/gtest.h>

#include <QProcess>

#include "core/method/method_file.h"
#include "e2e/run_helpers.h"
#include "method/method_examples.h"

#if defined(ZORVEL_RUN_EXECUTABLE)

namespace zorvel {
namespace {

struct Checked {
  int exitCode = -1;
  std::string out;
  std::string err;
};

// Run as from a login without a desktop session, where Qt's GUI side would warn about the
// missing runtime folder.
Checked Check(const std::string& dir, const std::string& name, const QStringList& more = {}) {
  QProcess run;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.remove("XDG_RUNTIME_DIR");
  run.setProcessEnvironment(environment);
  run.start(ZORVEL_RUN_EXECUTABLE, QStringList{"--start-dir", QString::fromStdString(dir),
                                               "--check-method", QString::fromStdString(name)} +
                                       more);
  EXPECT_TRUE(run.waitForFinished(10000));
  return {run.exitCode(), run.readAllStandardOutput().toStdString(),
          run.readAllStandardError().toStdString()};
}

TEST(CheckMethod, ValidFailingAndUnreadableMethods) {
  e2e::ensureApplication();
  const std::string dir = e2e::makeWorkspace("e2e-check");
  MethodSettings method = testing::FixedCuvetteMethod();
  ASSERT_TRUE(WriteMethodFile(method, dir + "METHODS/GOOD.MTH"));
  const Checked good = Check(dir, "GOOD.MTH");  // found in the workspace's METHODS
  EXPECT_EQ(good.exitCode, 0);
  EXPECT_EQ(good.out, "Method is valid.\n");
  EXPECT_EQ(good.err, "");
  EXPECT_EQ(Check(dir, dir + "METHODS/GOOD.MTH", {"--first-number", "-1"}).out,
            "The starting number is negative or undefined.  Please correct.\n");

  method.ReadTime = 200;
  ASSERT_TRUE(WriteMethodFile(method, dir + "METHODS/SLOW.MTH"));
  const Checked slow = Check(dir, "SLOW.MTH");
  EXPECT_EQ(slow.exitCode, 1);
  EXPECT_EQ(slow.out, "Read time for samples must be between 0.1 and 100.\n");

  // A run of that method is refused before anything is created.
  QProcess run;
  run.start(ZORVEL_RUN_EXECUTABLE,
            {"--start-dir", QString::fromStdString(dir), "--method",
             QString::fromStdString(dir + "METHODS/SLOW.MTH"), "--data",
             QString::fromStdString(dir + "DATA/SLOW.FIX"), "--port", "COM1=sim"});
  ASSERT_TRUE(run.waitForFinished(10000));
  EXPECT_EQ(run.exitCode(), 2);
  EXPECT_NE(run.readAllStandardError().toStdString().find(
                "is refused: Read time for samples must be between 0.1 and 100."),
            std::string::npos);
  EXPECT_TRUE(testing::readFile(dir + "DATA/SLOW.FIX").empty());

  method = testing::FixedCuvetteMethod();
  method.FixedPairs.colour(3).EmSl = 25;
  ASSERT_TRUE(WriteMethodFile(method, dir + "METHODS/SLIT.MTH"));
  const Checked slit = Check(dir, "SLIT.MTH");
  EXPECT_EQ(slit.exitCode, 1);
  EXPECT_EQ(slit.out,
            "Error in wavelength declarations.  Please correct.\nRow 3: Answer must be between "
            "2.5 and 20.\n");

  testing::writeFile(dir + "METHODS/OLD.MTH", "Version?=11\r\n");
  const Checked old = Check(dir, "OLD.MTH");
  EXPECT_EQ(old.exitCode, 2);
  EXPECT_EQ(old.out,
            "Invalid Methods File.  RUN ABORTED.\nOffending string : Method file version "
            "mismatch.  Expected 12 but found 11.\nPlease rebuild or try a different methods "
            "file.\n");
  EXPECT_EQ(Check(dir, "NONE.MTH").exitCode, 2);
}

}  // namespace
}  // namespace zorvel

#endif

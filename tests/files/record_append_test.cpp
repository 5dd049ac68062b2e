#include "core/files/record_append.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "support/bytes.h"

namespace zorvel {
namespace {

using testing::readFile;
using testing::writeFile;

TEST(RecordAppend, APartialLastLineIsCutOffBeforeTheRecordGoesOn) {
  const std::string dir = testing::makeTempDir("append");
  struct Case {
    const char* name;
    std::string before;
    const char* ending;
    std::string after;
  } cases[] = {
      {"whole", "H\r\nS1\t1.000\r\n", "\r\n", "H\r\nS1\t1.000\r\nS2\t2.000\r\n"},
      {"cut mid-line", "H\r\nS1\t1.000\r\nS2\t2.0", "\r\n", "H\r\nS1\t1.000\r\nS2\t2.000\r\n"},
      {"cut between CR and LF", "H\r\nS1\t1.000\r\nS2\t2.000\r", "\r\n",
       "H\r\nS1\t1.000\r\nS2\t2.000\r\n"},
      {"no whole line at all", "S1\t1.0", "\r\n", "S2\t2.000\r\n"},
      {"CR line ends", "H\rS1\t1.000\rS2\t", "\r", "H\rS1\t1.000\rS2\t2.000\r"},
      // Lines that end otherwise than the run's records are whole all the same.
      {"LF line ends", "H\nS1\t1.000\n", "\r\n", "H\nS1\t1.000\nS2\t2.000\r\n"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = dir + c.name;
    writeFile(path, c.before);
    const std::string record = std::string("S2\t2.000") + c.ending;
    ASSERT_TRUE(AppendRecordDurably(path, record, c.ending));
    EXPECT_SAME_BYTES(c.after, readFile(path));
  }
  // A missing file is created with the record alone; a folder that is not there fails.
  EXPECT_TRUE(AppendRecordDurably(dir + "NEW.CTL", "C1\r\n", "\r\n"));
  EXPECT_SAME_BYTES("C1\r\n", readFile(dir + "NEW.CTL"));
  EXPECT_FALSE(AppendRecordDurably(dir + "missing/NEW.CTL", "C1\r\n", "\r\n"));
}

TEST(RecordAppend, ARecordTheDiskTakesOnlyPartOfIsTakenOffAtOnce) {
  // A file size limit plays the full disk: the write stops eight bytes into the record.
  const std::string path = testing::makeTempDir("append-full") + "SET.FIX";
  const std::string before = "H\r\nS95\t330.614\t305.429\t181.900\r\n";
  writeFile(path, before);
  rlimit old{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
  rlimit tight = old;
  tight.rlim_cur = before.size() + 8;
  const auto previous = std::signal(SIGXFSZ, SIG_IGN);
  ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &tight), 0);
  std::string reason;
  const bool written =
      AppendRecordDurably(path, "S96\t330.614\t305.429\t181.900\r\n", "\r\n", &reason);
  ::setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, previous);
  EXPECT_FALSE(written);
  EXPECT_EQ(reason, "File too large");
  EXPECT_SAME_BYTES(before, readFile(path));
}

}  // namespace
}  // namespace zorvel

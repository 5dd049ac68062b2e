#include "core/files/paths.h"

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace zorvel {
namespace {

TEST(FileExists, TrueOnlyForAReadableFile) {
  const std::string dir = testing::makeTempDir("exists");
  EXPECT_FALSE(FileExists(""));
  EXPECT_FALSE(FileExists(dir + "none.txt"));
  EXPECT_FALSE(FileExists(dir));  // a folder is no file
  testing::writeFile(dir + "a.txt", "x");
  EXPECT_TRUE(FileExists(dir + "a.txt"));
  EXPECT_FALSE(FileExists(dir + "A.TXT"));  // opened by the path as given
}

}  // namespace
}  // namespace zorvel

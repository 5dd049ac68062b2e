#pragma once

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace zorvel::testing {

// Shows control bytes so that a failing comparison says where a CR, LF or TAB went missing:
// CR as <CR>, LF as <LF> followed by a line break, TAB as <TAB>, others as <xNN>.
std::string visible(std::string_view bytes);

// Reads a golden file from tests/golden byte for byte.
std::string readGolden(const std::string& name);
// Reads any file byte for byte; empty when it does not exist.
std::string readFile(const std::string& path);
void writeFile(const std::string& path, std::string_view bytes);

// A fresh empty directory under the system's temporary folder, ending in "/".
std::string makeTempDir(const std::string& tag);

}  // namespace zorvel::testing

// Compares two byte strings and, on a difference, shows both with their control bytes.
#define EXPECT_SAME_BYTES(expected, actual) \
  EXPECT_EQ(::zorvel::testing::visible(expected), ::zorvel::testing::visible(actual))

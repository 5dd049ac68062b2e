#include "core/platform/line_settings.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace {

TEST(LineSettings, ReadsTheInstrumentSettingsAndRejectsMalformedText) {
  EXPECT_EQ(ParseLineSettings("9600,N,8,1"), (LineSettings{9600, Parity::None, 8, StopBits::One}));
  EXPECT_EQ(ParseLineSettings("19200,e,7,2"),
            (LineSettings{19200, Parity::Even, 7, StopBits::Two}));
  EXPECT_EQ(ParseLineSettings("300,O,5,1.5"),
            (LineSettings{300, Parity::Odd, 5, StopBits::OneAndHalf}));
  for (const char* bad :
       {"", "9600", "9600,N,8", "9600,N,8,1,", "9600,X,8,1", "9600,N,9,1", "9600,N,4,1",
        "9600,N,8,3", "0,N,8,1", "-9600,N,8,1", "96O0,N,8,1", " 9600,N,8,1", "9600,NN,8,1"}) {
    EXPECT_FALSE(ParseLineSettings(bad).has_value()) << bad;
  }
}

}  // namespace
}  // namespace zorvel

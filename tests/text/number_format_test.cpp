#include "core/text/number_format.h"

#include <gtest/gtest.h>

#include "core/text/date_format.h"

namespace zorvel::text {
namespace {

TEST(PlainForm, WritesShortestOrdinaryText) {
  EXPECT_EQ(plain(1), "1");
  EXPECT_EQ(plain(0.5), "0.5");
  EXPECT_EQ(plain(820), "820");
  EXPECT_EQ(plain(-3), "-3");
  EXPECT_EQ(plain(0), "0");
  EXPECT_EQ(plainSingle(87.5f), "87.5");
  EXPECT_EQ(plainSingle(0.1f + 0.2f), "0.3");
  EXPECT_EQ(plainSingle(493.0f), "493");
  EXPECT_EQ(plainSingle(1234567.0f), "1234567");
  EXPECT_EQ(plainSingle(12345678.0f), "1.234568E+07");
}

TEST(PrintForm, BlankOrSignThenSevenDigitsThenBlank) {
  EXPECT_EQ(printForm(1.234f), " 1.234 ");
  EXPECT_EQ(printForm(-0.5f), "-0.5 ");
  EXPECT_EQ(printForm(0.0f), " 0 ");
  EXPECT_EQ(printForm(123.456789f), " 123.4568 ");
}

TEST(FixedPatterns, RoundHalvesAwayFromZeroOnTheShownDigits) {
  EXPECT_EQ(fixed(5.0, 1), "5.0");
  EXPECT_EQ(fixed(2.675f, 2), "2.68");
  EXPECT_EQ(fixed(0.0005, 3), "0.001");
  EXPECT_EQ(fixed(-0.04, 1), "0.0");  // no "-0.0"
  EXPECT_EQ(fixed(-1.25, 1), "-1.3");
  EXPECT_EQ(fixed(9.96, 1), "10.0");
  EXPECT_EQ(fixed(1234.5678, 0), "1235");
  EXPECT_EQ(fixed(0.0, 3), "0.000");
  EXPECT_EQ(fixed(1e-9, 3), "0.000");
  EXPECT_EQ(padLeft(fixed(12.34, 1), 7), "   12.3");
}

TEST(IntegerFields, RoundHalvesToEven) {
  EXPECT_EQ(toInt16(2.5), 2);
  EXPECT_EQ(toInt16(3.5), 4);
  EXPECT_EQ(toInt16(-2.5), -2);
  EXPECT_EQ(toInt16(2.51), 3);
  EXPECT_EQ(toInt16(32767.4), 32767);
  EXPECT_EQ(toInt16(32768.0), std::nullopt);
}

TEST(ParseNumber, AcceptsDecimalTextOnly) {
  EXPECT_EQ(parseNumber(" 12.5 "), 12.5);
  EXPECT_EQ(parseNumber("-3"), -3.0);
  EXPECT_EQ(parseNumber("+.5"), 0.5);
  EXPECT_EQ(parseNumber("1e3"), 1000.0);
  EXPECT_EQ(parseNumber("12,5"), std::nullopt);
  EXPECT_EQ(parseNumber("abc"), std::nullopt);
  EXPECT_EQ(parseNumber(""), std::nullopt);
  EXPECT_EQ(parseNumber("."), std::nullopt);
  EXPECT_EQ(parseNumber("--1"), std::nullopt);
}

TEST(DateAndTime, MonthDayYearAnd24Hour) {
  const CalendarTime t{2000, 3, 7, 14, 5, 9};
  EXPECT_EQ(formatDate(t), "03-07-2000");
  EXPECT_EQ(formatTime(t), "14:05:09");
  EXPECT_EQ(formatHms(3 * 3600 + 61), "03:01:01");
}

}  // namespace
}  // namespace zorvel::text

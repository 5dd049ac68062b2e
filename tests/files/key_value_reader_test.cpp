#include "core/files/key_value_reader.h"

#include <gtest/gtest.h>

namespace zorvel {
namespace {

TEST(KeyValueReader, CommaEndsANumericFieldButNotATextLine) {
  KeyValueReader ints;
  ints.openText("Key?=12,5\r\nNext?=7\r\n");
  std::int16_t value = 0;
  ASSERT_TRUE(ints.ReadIntValue(value));
  EXPECT_EQ(value, 12);
  // The text after the comma is what the next field read returns.
  ASSERT_TRUE(ints.ReadIntValue(value));
  EXPECT_EQ(value, 5);
  ASSERT_TRUE(ints.ReadIntValue(value));
  EXPECT_EQ(value, 7);

  KeyValueReader texts;
  texts.openText("Key?=12,5\r\nOperator?= J. Smith, lab 2 \r\n");
  EXPECT_EQ(texts.ReadTextValue(), "12,5");
  EXPECT_EQ(texts.ReadTextValue(), " J. Smith, lab 2 ");
}

TEST(KeyValueReader, EndOfFileClosesAndReports) {
  KeyValueReader reader;
  reader.openText("A?=1\r\n");
  std::int16_t value = 0;
  ASSERT_TRUE(reader.ReadIntValue(value));
  EXPECT_FALSE(reader.ReadIntValue(value));
  EXPECT_FALSE(reader.isOpen());
  EXPECT_EQ(value, 1);

  KeyValueReader text;
  text.openText("");
  EXPECT_EQ(text.ReadTextValue(), KeyValueReader::kEofMarker);
  float single = 2.5f;
  EXPECT_FALSE(text.ReadSingleValue(single));
}

TEST(KeyValueReader, ConversionRoundsHalvesToEvenAndKeepsOldValueOnBadText) {
  KeyValueReader reader;
  reader.openText("A?=2.5\r\nB?=3.5\r\nC?=abc\r\nD?=99999\r\n  E?= 0.25\rF=x=4\n");
  std::int16_t value = 0;
  reader.ReadIntValue(value);
  EXPECT_EQ(value, 2);
  reader.ReadIntValue(value);
  EXPECT_EQ(value, 4);
  EXPECT_TRUE(reader.ReadIntValue(value));  // not a number: old value kept, still ok
  EXPECT_EQ(value, 4);
  EXPECT_TRUE(reader.ReadIntValue(value));  // beyond 16 bits: old value kept
  EXPECT_EQ(value, 4);
  float single = 0;
  EXPECT_TRUE(reader.ReadSingleValue(single));  // leading blanks skipped, CR alone ends a line
  EXPECT_FLOAT_EQ(single, 0.25f);
  EXPECT_EQ(reader.ReadTextValue(), "x=4");  // only the first "=" separates
}

TEST(KeyValueReader, LineWithoutEqualsIsTakenWhole) {
  KeyValueReader reader;
  reader.openText("480\r\nplain text\r\n");
  std::int16_t value = 0;
  reader.ReadIntValue(value);
  EXPECT_EQ(value, 480);
  EXPECT_EQ(reader.ReadTextValue(), "plain text");
}

}  // namespace
}  // namespace zorvel

#include "core/instruments/fluorimeter_protocol.h"

#include <gtest/gtest.h>

#include "core/instruments/instrument_error.h"

namespace zorvel::fluor {
namespace {

TEST(FluorimeterReplies, FieldValueTakesTheLeadingNumberOnly) {
  EXPECT_DOUBLE_EQ(350.1, FieldValue("350.1"));
  EXPECT_DOUBLE_EQ(12.0, FieldValue(" 12abc"));
  EXPECT_DOUBLE_EQ(-0.5, FieldValue("-.5,"));
  EXPECT_DOUBLE_EQ(25123.0, FieldValue("25123"));
  EXPECT_DOUBLE_EQ(1500.0, FieldValue("1.5E3x"));
  EXPECT_DOUBLE_EQ(7.0, FieldValue("7E"));
  EXPECT_DOUBLE_EQ(0.0, FieldValue("abc"));
  EXPECT_DOUBLE_EQ(0.0, FieldValue(""));
  EXPECT_DOUBLE_EQ(0.0, FieldValue("-"));
  EXPECT_DOUBLE_EQ(0.0, FieldValue("."));
}

TEST(FluorimeterReplies, RunToleranceAndExactRule) {
  using R = AcceptanceRule;
  EXPECT_TRUE(WavelengthsAccepted(R::WithinTolerance, "350.1", "397.5", 350.0, 397.5));
  EXPECT_FALSE(WavelengthsAccepted(R::Exact, "350.1", "397.5", 350.0, 397.5));
  EXPECT_TRUE(WavelengthsAccepted(R::WithinTolerance, "520.1", "540.0", 520.0, 540.0));
  EXPECT_FALSE(WavelengthsAccepted(R::WithinTolerance, "520.2", "540.0", 520.0, 540.0));
  EXPECT_FALSE(WavelengthsAccepted(R::WithinTolerance, "520.0", "539.8", 520.0, 540.0));
  EXPECT_TRUE(WavelengthsAccepted(R::Exact, "350.0", "398.0", 350.0, 398.0));
  EXPECT_FALSE(WavelengthsAccepted(R::Exact, "350.0", "397.5", 350.0, 398.0));
  // A field with no number reads as 0 and never matches a real wavelength.
  EXPECT_FALSE(WavelengthsAccepted(R::WithinTolerance, "", "397.5", 350.0, 397.5));
}

TEST(FluorimeterReplies, StatusStartRoundsHalvesToEven) {
  EXPECT_EQ(100.0, StatusStartS(100.4));
  EXPECT_EQ(101.0, StatusStartS(100.6));
  EXPECT_EQ(100.0, StatusStartS(100.5));
  EXPECT_EQ(102.0, StatusStartS(101.5));
}

TEST(FluorimeterReplies, TimeDriveHeaderSplitsNineFields) {
  const auto fields = SplitTimeDriveHeader("\x7fV3.1,1,350.0,397.5,480.0,5.0,5.0,240,0.50\r\n0000");
  const TimeDriveHeader expected{"V3.1", "1",   "350.0", "397.5", "480.0",
                                 "5.0",  "5.0", "240",   "0.50"};
  EXPECT_EQ(expected, fields);
  // A missing separator takes the rest into that field and leaves the others empty.
  const auto cut = SplitTimeDriveHeader(
      "\x7f"
      "A,B,C0000");
  EXPECT_EQ("C0000", cut[2]);
  EXPECT_EQ("", cut[3]);
  EXPECT_EQ("", cut[8]);
  EXPECT_EQ("", SplitTimeDriveHeader("")[0]);
}

TEST(InstrumentErrors, TableAndTheWaterCellOnlyUnrecognisedCommand) {
  EXPECT_EQ(std::nullopt, InstrumentErrorMessage("0002", false));
  EXPECT_EQ("UNRECOGNIZED COMMAND", InstrumentErrorMessage("0002", true));
  EXPECT_EQ("INVALID PARAMETER", InstrumentErrorMessage("0003", false));
  EXPECT_EQ("ILLEGAL CHARACTER", InstrumentErrorMessage("0006", true));
  EXPECT_EQ("VALUE OUT OF RANGE", InstrumentErrorMessage("0009", false));
  EXPECT_EQ("ORDINATE OVERFLOW", InstrumentErrorMessage("0013", false));
  EXPECT_EQ("OUTPUT BUFFER OVERFLOW", InstrumentErrorMessage("0023", false));
  EXPECT_EQ(std::nullopt, InstrumentErrorMessage("0001", true));
  EXPECT_EQ(std::nullopt, InstrumentErrorMessage("0110", false));
  EXPECT_EQ(LinkOutcome::Resend, OutcomeOf(LinkFailure::ReplyTimeout));
  EXPECT_EQ(LinkOutcome::Resend, OutcomeOf(LinkFailure::Mismatch));
  EXPECT_EQ(LinkOutcome::Stop, OutcomeOf(LinkFailure::LostPort));
  EXPECT_EQ(LinkOutcome::Stop, OutcomeOf(LinkFailure::Halted));
  EXPECT_EQ(LinkOutcome::Continue, OutcomeOf(LinkFailure::None));
}

}  // namespace
}  // namespace zorvel::fluor

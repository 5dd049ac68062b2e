#include "core/autosampler/tray_geometry_file.h"

#include <gtest/gtest.h>

#include <string>

#include "core/text/number_format.h"
#include "support/bytes.h"

namespace zorvel {
namespace {

std::string records(int count) {
  std::string text;
  for (int k = 0; k < count; ++k) {
    text += text::plain(10 + k % 200) + ", " + text::plain(20 + k % 100) + "," + text::plain(k) +
            "\r\n";
  }
  return text;
}

TrayLoadResult read(const std::string& text, TrayGeometry& tray) {
  return ParseTrayGeometry(text, "rack.tgf", tray);
}

TEST(TrayGeometryTest, RecordsAreReadInFileOrderAndTheTubeCountIsTheLargestNumber) {
  TrayGeometry tray;
  ASSERT_TRUE(read(records(97), tray));
  EXPECT_EQ(tray.positionCount, 97);
  EXPECT_EQ(tray.TubeCount, 96);
  EXPECT_EQ(tray.positions[96].X, 106.0f);
  // Free format: a record may run over lines; the position is its place, not its number.
  ASSERT_TRUE(read("245 20.5\n7\n\n20,20,3", tray));
  EXPECT_EQ(tray.positionCount, 2);
  EXPECT_EQ(tray.positions[0].Y, 20.5f);
  EXPECT_EQ(tray.positions[1].Number, 3);
  EXPECT_EQ(tray.TubeCount, 7);
}

TEST(TrayGeometryTest, AFullTableIsReadAndOneRecordMoreIsRefusedWhereItStands) {
  TrayGeometry tray;
  ASSERT_TRUE(read(records(501), tray));
  EXPECT_EQ(tray.TubeCount, 500);
  // Line 502 is the first record past the table; what follows it is never looked at.
  const auto refused = read(records(502) + "junk", tray);
  EXPECT_FALSE(refused);
  EXPECT_EQ(refused.message,
            "The tray geometry file rack.tgf, line 502: more than 501 positions; the tray holds "
            "positions 0 to 500.");
  EXPECT_EQ(tray.positionCount, 0);
  EXPECT_EQ(tray.TubeCount, 0);
}

TEST(TrayGeometryTest, BadRecordsAreRefusedNamingTheirLine) {
  TrayGeometry tray;
  EXPECT_EQ(read("245,20,0\n20,x,1\n", tray).message,
            "The tray geometry file rack.tgf, line 2: \"x\" is not a number.");
  EXPECT_EQ(read("245,20,0\n20,20\n", tray).message,
            "The tray geometry file rack.tgf, line 2: a position needs three numbers (X, Y and "
            "its number).");
  EXPECT_EQ(read("245,20,0\n20,20,1\n20,20,99999\n", tray).message,
            "The tray geometry file rack.tgf, line 3: the position number 99999 is not a tube "
            "number.");
  EXPECT_EQ(read("", tray).message,
            "The tray geometry file rack.tgf, line 1: the file holds no positions.");
  EXPECT_EQ(read("\r\n \r\n", tray).message,
            "The tray geometry file rack.tgf, line 2: the file holds no positions.");
  EXPECT_EQ(tray.positionCount, 0);
  EXPECT_EQ(tray.TubeCount, 0);
}

// A rinse station left of the arm's home and a column of tubes past its right-hand travel are
// common in real trays: they are read, and the log says once how the arm will be sent there.
TEST(TrayGeometryTest, PositionsBeyondTheArmsTravelAreReadAndNamedInOneNote) {
  TrayGeometry tray;
  ASSERT_TRUE(read("-4.25, 9.5, 0\n20,20,1\n308.4,20,2\n150,190,3\n", tray));
  EXPECT_EQ(tray.TubeCount, 3);
  EXPECT_EQ(tray.positions[0].X, -4.25f);
  EXPECT_EQ(tray.positions[2].X, 308.4f);
  EXPECT_EQ(TrayReachNote(tray, "rack.tgf"),
            "Tray geometry file rack.tgf: 3 position(s) outside the arm's reach (X 0 to 302, Y 0 "
            "to 181 mm): position 0 X -4.25, Y 9.5; position 2 X 308.4, Y 20; position 3 X 150, "
            "Y 190. X beyond 302 is sent as 302; every other value is sent as it stands.");
  ASSERT_TRUE(read(records(20), tray));
  EXPECT_EQ(TrayReachNote(tray, "rack.tgf"), "");
}

TEST(TrayGeometryTest, AFolderNamedAsTheFileIsRefused) {
  TrayGeometry tray;
  const std::string folder = ::testing::TempDir();
  EXPECT_EQ(LoadTrayGeometry(folder, tray).message,
            "The tray geometry file " + folder + " is a folder; a tray geometry file is expected.");
}

TEST(TrayGeometryTest, AMissingFileIsRefusedByName) {
  TrayGeometry tray;
  const auto result = LoadTrayGeometry("/nonexistent/rack.tgf", tray);
  EXPECT_FALSE(result);
  EXPECT_EQ(result.message, "The tray geometry file /nonexistent/rack.tgf could not be read.");
}

}  // namespace
}  // namespace zorvel

#include "core/app/port_map.h"

#include "core/app/simulated_marking.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "support/bytes.h"

namespace zorvel {
namespace {

TEST(PortAssignment, ReadsBothFormsAndRejectsTheRest) {
  EXPECT_EQ(ParsePortAssignment("COM3=/dev/ttyUSB0"), (PortAssignment{3, "/dev/ttyUSB0"}));
  EXPECT_EQ(ParsePortAssignment("COM1?=/dev/pts/7"), (PortAssignment{1, "/dev/pts/7"}));
  EXPECT_EQ(ParsePortAssignment(" com2=sim \r"), (PortAssignment{2, "sim"}));
  for (const char* bad : {"", "COM=x", "COM0=x", "COM5=x", "COM12=x",
                          "COM1=", "COM1?=  ", "COM1 /dev/ttyS0", "PORT1=x",
                          "COM1?"
                          "?=x",
                          "COMx=y"}) {
    EXPECT_FALSE(ParsePortAssignment(bad).has_value()) << bad;
  }
}

TEST(PortsFile, SkipsBadLinesAndAcceptsEitherLineEnd) {
  const auto lines = ParsePortsFile("COM1?=/dev/ttyUSB0\r\njunk\r\n\nCOM9?=x\nCOM3?=sim");
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[0], (PortAssignment{1, "/dev/ttyUSB0"}));
  EXPECT_EQ(lines[1], (PortAssignment{3, "sim"}));
}

TEST(PortsFile, WrittenFileReadsBackAndEndsLinesWithCrLf) {
  const std::vector<PortAssignment> written{{1, "/dev/pts/7"}, {3, "/dev/pts/9"}};
  EXPECT_SAME_BYTES("COM1?=/dev/pts/7\r\nCOM3?=/dev/pts/9\r\n", FormatPortsFile(written));
  const std::string dir = testing::makeTempDir("portmap");
  ASSERT_TRUE(WritePortsFile(dir + "ZORVEL.PORTS", written));
  EXPECT_EQ(ParsePortsFile(testing::readFile(dir + "ZORVEL.PORTS")), written);
}

TEST(PortMapBuild, CommandLineWinsOverFileWhichWinsOverDefaults) {
  std::vector<std::string> rejected;
  const PortMap map = BuildPortMap({"COM2=sim", "--nonsense", "COM1=/dev/ttyACM0"},
                                   "COM1?=/dev/ttyUSB0\r\nCOM3?=/dev/ttyUSB1\r\n", &rejected);
  EXPECT_EQ(map.deviceFor(1), "/dev/ttyACM0");
  EXPECT_EQ(map.deviceFor(2), "sim");
  EXPECT_TRUE(map.isSimulated(2));
  EXPECT_EQ(map.deviceFor(3), "/dev/ttyUSB1");
  EXPECT_EQ(map.deviceFor(4), "/dev/ttyS3");
  EXPECT_FALSE(map.isSimulated(4));
  EXPECT_EQ(rejected, std::vector<std::string>{"--nonsense"});
}

TEST(PortMapBuild, LoadsTheFileBesideThePreferencesAndToleratesItsAbsence) {
  const std::string dir = testing::makeTempDir("portmap");
  EXPECT_EQ(PortsFilePathBeside(dir + "ZORVEL.PRF"), dir + "ZORVEL.PORTS");
  EXPECT_EQ(PortsFilePathBeside("ZORVEL.PRF"), "ZORVEL.PORTS");
  EXPECT_EQ(LoadPortMap({}, dir + "ZORVEL.PRF").deviceFor(1), "/dev/ttyS0");
  testing::writeFile(dir + "ZORVEL.PORTS", "COM1?=sim\n");
  EXPECT_TRUE(LoadPortMap({}, dir + "ZORVEL.PRF").isSimulated(1));
  EXPECT_EQ(LoadPortMap({"COM1=/dev/ttyS7"}, dir + "ZORVEL.PRF").deviceFor(1), "/dev/ttyS7");
}

TEST(SimulatedMarking, NamesTheInstrumentsInUseThatAreSimulated) {
  PortMap map = BuildPortMap({"COM2=sim", "COM3=sim"}, "");
  Preferences prefs;                            // fluorimeter COM1, dilutor COM2, arm COM3
  EXPECT_EQ(SimulatedMarking(map, prefs), "");  // no autosampler: arm and pump are not in use
  EXPECT_EQ(MarkedTitle("ZORVEL", ""), "ZORVEL");
  prefs.AutoSampler = true;
  EXPECT_EQ(SimulatedMarking(map, prefs), "SIMULATED arm, pump");
  map = BuildPortMap({"COM1=sim"}, "COM4?=sim\r\n");
  EXPECT_EQ(MarkedTitle("ZORVEL", SimulatedMarking(map, prefs)), "ZORVEL - SIMULATED fluorimeter");
  EXPECT_EQ(SimulatedPortsLogText(map), "Simulated ports: COM1, COM4");
  EXPECT_EQ(SimulatedPortsLogText(BuildPortMap({}, "")), "");
}

// zorvel-sim's pseudo-terminals are marked as its own in the ports file it writes; a port the
// command line moves elsewhere is real again.
TEST(SimulatedMarking, PortsAZorvelSimFileAssignsLeadToASimulator) {
  const std::string file = FormatPortsFile({{1, "/dev/pts/7"}, {3, "/dev/pts/9"}}, true);
  EXPECT_SAME_BYTES("COM1?=/dev/pts/7\r\nCOM3?=/dev/pts/9\r\nSimulator?=zorvel-sim\r\n", file);
  EXPECT_EQ(std::nullopt, PortsFileProblem(file, "ZORVEL.PORTS"));
  const PortMap map = BuildPortMap({"COM3=/dev/ttyUSB0"}, file);
  EXPECT_TRUE(map.leadsToSimulator(1));
  EXPECT_FALSE(map.isSimulated(1));  // no cuvettes handed over in process
  EXPECT_FALSE(map.leadsToSimulator(3));
  EXPECT_FALSE(BuildPortMap({}, "COM1?=/dev/pts/7\r\n").leadsToSimulator(1));
  Preferences prefs;
  prefs.AutoSampler = true;
  EXPECT_EQ(SimulatedMarking(map, prefs), "SIMULATED fluorimeter");
}

}  // namespace
}  // namespace zorvel

namespace zorvel {
namespace {

// A ports file that is garbage, binary or empty is refused with its line; nothing of it is used.
TEST(PortMapBuild, AnUnusablePortsFileIsRefusedNamingItsLine) {
  const std::string dir = testing::makeTempDir("portmap-bad");
  const std::string path = dir + "ZORVEL.PORTS";
  const std::pair<std::string, std::string> cases[] = {
      {"COM1?=sim\r\n\r\nhello world\r\n",
       "line 3: \"hello world\" is not of the form COMn?=DEVICE (n from 1 to 4)."},
      {std::string("COM1?=sim\n\x01\xfe\x00zz", 15),
       "line 2: bytes that are not text is not of the form COMn?=DEVICE (n from 1 to 4)."},
      {"COM7?=/dev/ttyUSB0\n",
       "line 1: \"COM7?=/dev/ttyUSB0\" is not of the form COMn?=DEVICE (n "
       "from 1 to 4)."},
      {"",
       "line 1: the file holds no COMn?=DEVICE line; delete it to use the machine's own "
       "ports."},
  };
  for (const auto& [text, why] : cases) {
    testing::writeFile(path, text);
    std::string refusal;
    const PortMap map = LoadPortMap({}, dir + "ZORVEL.PRF", nullptr, &refusal);
    EXPECT_EQ(refusal, "The ports file " + path + ", " + why);
    EXPECT_FALSE(map.isSimulated(1));
  }
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  std::string refusal;
  LoadPortMap({}, dir + "ZORVEL.PRF", nullptr, &refusal);
  EXPECT_EQ(refusal, "The ports file " + path + " is a folder.");
}

}  // namespace
}  // namespace zorvel

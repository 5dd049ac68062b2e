#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/platform/line_source.h"

namespace zorvel {

// The device name that puts an instrument on the built-in simulator instead of a real port.
inline constexpr std::string_view kSimulatorDevice = "sim";
// The ports file's name; it lies beside the preferences file.
inline constexpr std::string_view kPortsFileName = "ZORVEL.PORTS";
// The ports file's line saying that every port it assigns leads to a simulator in another
// process (zorvel-sim writes it with the pseudo-terminals it serves).
inline constexpr std::string_view kSimulatorLine = "Simulator?=zorvel-sim";

// One "COMn=DEVICE" assignment.
struct PortAssignment {
  int comPort = 0;
  std::string device;

  friend bool operator==(const PortAssignment&, const PortAssignment&) = default;
};

// Which device each COM number of the settings files stands for. Numbers without an
// assignment fall back to the machine's own serial ports: COM1 is /dev/ttyS0, COM2 /dev/ttyS1...
struct PortMap {
  std::map<int, std::string> devices;
  // The COM numbers whose device a simulator in another process serves.
  std::set<int> simulatorPorts;

  std::string deviceFor(int comPort) const;
  // The port is on the built-in simulator.
  bool isSimulated(int comPort) const { return deviceFor(comPort) == kSimulatorDevice; }
  // The port leads to a simulator, built in or in another process: its readings are not real.
  bool leadsToSimulator(int comPort) const {
    return isSimulated(comPort) || simulatorPorts.contains(comPort);
  }
};

// The machine's serial port behind a COM number when nothing else is said.
std::string DefaultDevice(int comPort);

// Reads "COM3=/dev/ttyUSB0" from the command line, or "COM3?=/dev/ttyUSB0" from the ports file
// (either form is accepted in both places; "com3" is the same port). COM numbers run 1..4.
// Nothing when the text is not such an assignment.
std::optional<PortAssignment> ParsePortAssignment(std::string_view text);

// The assignments of a ports file's text, lines ended by CR LF or LF; bad lines are skipped.
std::vector<PortAssignment> ParsePortsFile(std::string_view text);

// Why a ports file's text cannot be used: a line that is neither blank nor an assignment (the
// first one, with its number), or no assignment at all. Nothing when it can be used.
std::optional<std::string> PortsFileProblem(std::string_view text, const std::string& path);

// The ports file's text for the given assignments: "COM1?=/dev/pts/7" lines ended by CR LF,
// then the simulator line when a simulator serves them all.
std::string FormatPortsFile(const std::vector<PortAssignment>& assignments,
                            bool bySimulator = false);

// Builds the map: command-line entries win, then the ports file's lines, then the defaults. A
// port keeps the file's simulator line only while the command line leaves it alone.
// Command-line entries that are not assignments are returned in `rejected` for a message.
PortMap BuildPortMap(const std::vector<std::string>& commandLine, std::string_view portsFileText,
                     std::vector<std::string>* rejected = nullptr);

// The ports file beside the preferences file at preferencesPath.
std::string PortsFilePathBeside(const std::string& preferencesPath);

// Reads the ports file beside the preferences (a missing file means no lines) and builds the map.
// A file that cannot be used (PortsFileProblem, a folder) adds nothing, and `fileRefusal` says
// why, naming the file and the line.
PortMap LoadPortMap(const std::vector<std::string>& commandLine, const std::string& preferencesPath,
                    std::vector<std::string>* rejected = nullptr,
                    std::string* fileRefusal = nullptr);

// Writes the ports file whole, through a temporary file renamed over the old one.
bool WritePortsFile(const std::string& path, const std::vector<PortAssignment>& assignments,
                    bool bySimulator = false);

}  // namespace zorvel

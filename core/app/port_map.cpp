#include "core/app/port_map.h"

#include <algorithm>
#include <cctype>

#include "core/files/file_output.h"
#include "core/files/paths.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr int kHighestComPort = 4;

std::string_view trimBlanks(std::string_view text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) {
    text.remove_prefix(1);
  }
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) {
    text.remove_suffix(1);
  }
  return text;
}

bool startsWithCom(std::string_view text) {
  if (text.size() < 3) return false;
  for (std::size_t i = 0; i < 3; ++i) {
    if (std::toupper(static_cast<unsigned char>(text[i])) != "COM"[i]) return false;
  }
  return true;
}

}  // namespace

std::string DefaultDevice(int comPort) {
  return "/dev/ttyS" + text::plain(comPort - 1);
}

std::string PortMap::deviceFor(int comPort) const {
  const auto found = devices.find(comPort);
  return found != devices.end() ? found->second : DefaultDevice(comPort);
}

std::optional<PortAssignment> ParsePortAssignment(std::string_view text) {
  text = trimBlanks(text);
  if (!startsWithCom(text)) return std::nullopt;
  text.remove_prefix(3);
  const std::size_t equals = text.find('=');
  if (equals == std::string_view::npos) return std::nullopt;
  std::string_view number = text.substr(0, equals);
  if (!number.empty() && number.back() == '?') number.remove_suffix(1);
  if (number.size() != 1 || number[0] < '1' || number[0] > '0' + kHighestComPort) {
    return std::nullopt;
  }
  const std::string_view device = trimBlanks(text.substr(equals + 1));
  if (device.empty()) return std::nullopt;
  return PortAssignment{number[0] - '0', std::string(device)};
}

std::vector<PortAssignment> ParsePortsFile(std::string_view text) {
  std::vector<PortAssignment> out;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    if (auto assignment = ParsePortAssignment(line)) out.push_back(*assignment);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return out;
}

std::optional<std::string> PortsFileProblem(std::string_view text, const std::string& path) {
  const std::string where = "The ports file " + path + ", line ";
  int lineNumber = 0;
  int assignments = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    ++lineNumber;
    if (ParsePortAssignment(line)) {
      ++assignments;
    } else if (!trimBlanks(line).empty() && trimBlanks(line) != kSimulatorLine) {
      bool printable = true;
      for (const char c : line) {
        const auto byte = static_cast<unsigned char>(c);
        printable = printable && (byte >= 0x20 || c == '\t' || c == '\r') && byte != 0x7f;
      }
      return where + text::plain(lineNumber) + ": " +
             (printable ? "\"" + std::string(trimBlanks(line)) + "\"" : "bytes that are not text") +
             " is not of the form COMn?=DEVICE (n from 1 to 4).";
    }
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  if (assignments > 0) return std::nullopt;
  return where + text::plain(std::max(lineNumber, 1)) +
         ": the file holds no COMn?=DEVICE line; delete it to use the machine's own ports.";
}

std::string FormatPortsFile(const std::vector<PortAssignment>& assignments, bool bySimulator) {
  std::string out;
  for (const PortAssignment& a : assignments) {
    out += "COM" + text::plain(a.comPort) + "?=" + a.device + "\r\n";
  }
  if (bySimulator) out += std::string(kSimulatorLine) + "\r\n";
  return out;
}

PortMap BuildPortMap(const std::vector<std::string>& commandLine, std::string_view portsFileText,
                     std::vector<std::string>* rejected) {
  PortMap map;
  bool bySimulator = false;
  for (std::string_view text = portsFileText; !text.empty() && !bySimulator;) {
    const std::size_t end = text.find('\n');
    bySimulator = trimBlanks(text.substr(0, end)) == kSimulatorLine;
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  for (const PortAssignment& a : ParsePortsFile(portsFileText)) {
    map.devices[a.comPort] = a.device;
    if (bySimulator) map.simulatorPorts.insert(a.comPort);
  }
  for (const std::string& entry : commandLine) {
    if (auto a = ParsePortAssignment(entry)) {
      map.devices[a->comPort] = a->device;
      map.simulatorPorts.erase(a->comPort);
    } else if (rejected != nullptr) {
      rejected->push_back(entry);
    }
  }
  return map;
}

std::string PortsFilePathBeside(const std::string& preferencesPath) {
  const std::size_t slash = preferencesPath.rfind('/');
  const std::string directory =
      slash == std::string::npos ? std::string() : preferencesPath.substr(0, slash + 1);
  return directory + std::string(kPortsFileName);
}

PortMap LoadPortMap(const std::vector<std::string>& commandLine, const std::string& preferencesPath,
                    std::vector<std::string>* rejected, std::string* fileRefusal) {
  const std::string path = PortsFilePathBeside(preferencesPath);
  std::string text;
  if (IsFolder(path)) {
    if (fileRefusal != nullptr) *fileRefusal = "The ports file " + path + " is a folder.";
    return BuildPortMap(commandLine, "", rejected);
  }
  if (!ReadWholeFile(path, text)) return BuildPortMap(commandLine, "", rejected);
  if (auto problem = PortsFileProblem(text, path)) {
    if (fileRefusal != nullptr) *fileRefusal = *problem;
    text.clear();
  }
  return BuildPortMap(commandLine, text, rejected);
}

bool WritePortsFile(const std::string& path, const std::vector<PortAssignment>& assignments,
                    bool bySimulator) {
  return WriteWholeFile(path, FormatPortsFile(assignments, bySimulator));
}

}  // namespace zorvel

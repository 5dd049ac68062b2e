#include "core/autosampler/tray_geometry_file.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "core/files/file_output.h"
#include "core/files/paths.h"

#include "core/text/number_format.h"

namespace zorvel {

namespace {

bool isSeparator(char c) {
  return c == ',' || c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// Collects the free-format values of a file into records of three, remembering the line on
// which each record begins.
class RecordReader {
 public:
  RecordReader(const std::string& fileName, TrayGeometry& tray)
      : fileName_(fileName), tray_(tray) {}

  // False once the file has been refused; the rest of it is then not read.
  bool takeLine(std::string_view line, int lineNumber) {
    std::size_t i = 0;
    while (i < line.size()) {
      while (i < line.size() && isSeparator(line[i])) ++i;
      const std::size_t start = i;
      while (i < line.size() && !isSeparator(line[i])) ++i;
      if (i > start && !takeValue(line.substr(start, i - start), lineNumber)) return false;
    }
    return true;
  }

  bool finish(int lastLine) {
    if (filled_ != 0)
      return refuse(recordLine_, "a position needs three numbers (X, Y and its number)");
    if (tray_.positionCount == 0)
      return refuse(std::max(lastLine, 1), "the file holds no positions");
    return true;
  }

  const std::string& message() const { return message_; }

 private:
  bool takeValue(std::string_view value, int lineNumber) {
    if (filled_ == 0) {
      recordLine_ = lineNumber;
      if (tray_.positionCount > kMaxTrayPosition) {
        return refuse(lineNumber, "more than " + text::fixed(kMaxTrayPosition + 1.0, 0) +
                                      " positions; the tray holds positions 0 to " +
                                      text::fixed(static_cast<double>(kMaxTrayPosition), 0));
      }
    }
    const auto number = text::parseNumber(value);
    if (!number) {
      return refuse(lineNumber, "\"" + std::string(value) + "\" is not a number");
    }
    values_[static_cast<std::size_t>(filled_++)] = *number;
    return filled_ < 3 || storeRecord();
  }

  bool storeRecord() {
    filled_ = 0;
    const auto tube = text::toInt16(values_[2]);
    if (!tube)
      return refuse(recordLine_,
                    "the position number " + text::plain(values_[2]) + " is not a tube number");
    // Positions beyond the arm's travel are kept: the arm is sent X 302 for anything further
    // right and every other value as it stands (TrayReachNote says so in the log).
    TrayPosition& p = tray_.positions[static_cast<std::size_t>(tray_.positionCount++)];
    p.X = static_cast<float>(values_[0]);
    p.Y = static_cast<float>(values_[1]);
    p.Number = *tube;
    if (p.Number > tray_.TubeCount) tray_.TubeCount = p.Number;
    return true;
  }

  bool refuse(int lineNumber, const std::string& why) {
    message_ = "The tray geometry file " + fileName_ + ", line " +
               text::fixed(static_cast<double>(lineNumber), 0) + ": " + why + ".";
    return false;
  }

  const std::string& fileName_;
  TrayGeometry& tray_;
  std::array<double, 3> values_{};
  int filled_ = 0;
  int recordLine_ = 0;
  std::string message_;
};

}  // namespace

TrayLoadResult ParseTrayGeometry(std::string_view text, const std::string& fileName,
                                 TrayGeometry& tray) {
  tray = TrayGeometry{};
  RecordReader reader(fileName, tray);
  int lineNumber = 0;
  bool ok = true;
  std::size_t start = 0;
  while (ok && start < text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    ok = reader.takeLine(text.substr(start, end - start), ++lineNumber);
    start = end + 1;
  }
  if (ok) ok = reader.finish(lineNumber);
  if (!ok) {
    tray = TrayGeometry{};
    return TrayLoadResult{false, reader.message()};
  }
  return TrayLoadResult{true, {}};
}

TrayLoadResult LoadTrayGeometry(const std::string& path, TrayGeometry& tray) {
  tray = TrayGeometry{};
  if (IsFolder(path)) {
    return TrayLoadResult{false, "The tray geometry file " + path +
                                     " is a folder; a tray geometry file is expected."};
  }
  std::string text;
  if (!ReadWholeFile(path, text))
    return TrayLoadResult{false, "The tray geometry file " + path + " could not be read."};
  return ParseTrayGeometry(text, path, tray);
}

std::string TrayReachNote(const TrayGeometry& tray, const std::string& fileName) {
  constexpr int kNamedAtMost = 8;
  std::string named;
  int outside = 0;
  for (int k = 0; k < tray.positionCount; ++k) {
    const TrayPosition& p = tray.positions[static_cast<std::size_t>(k)];
    if (p.X >= 0 && p.X <= kArmReachXMm && p.Y >= 0 && p.Y <= kArmReachYMm) continue;
    if (++outside > kNamedAtMost) continue;
    named += std::string(named.empty() ? "" : "; ") + "position " +
             text::fixed(static_cast<double>(k), 0) + " X " + text::plainSingle(p.X) + ", Y " +
             text::plainSingle(p.Y);
  }
  if (outside == 0) return {};
  if (outside > kNamedAtMost)
    named += "; and " + text::fixed(static_cast<double>(outside - kNamedAtMost), 0) + " more";
  return "Tray geometry file " + fileName + ": " + text::fixed(static_cast<double>(outside), 0) +
         " position(s) outside the arm's reach (X 0 to " + text::plainSingle(kArmReachXMm) +
         ", Y 0 to " + text::plainSingle(kArmReachYMm) + " mm): " + named + ". X beyond " +
         text::plainSingle(kArmReachXMm) + " is sent as " + text::plainSingle(kArmReachXMm) +
         "; every other value is sent as it stands.";
}

}  // namespace zorvel

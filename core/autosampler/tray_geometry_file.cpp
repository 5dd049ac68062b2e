#include "core/autosampler/tray_geometry_file.h"

#include <array>
#include <string_view>

#include "core/files/file_output.h"

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

  bool finish() {
    if (filled_ == 0) return true;
    return refuse(recordLine_, "a position needs three numbers (X, Y and its number)");
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
    const double x = values_[0];
    const double y = values_[1];
    if (x < 0 || x > kArmReachXMm || y < 0 || y > kArmReachYMm) {
      return refuse(recordLine_, "X " + text::plain(x) + ", Y " + text::plain(y) +
                                     " lies outside the arm's reach (X 0 to " +
                                     text::plainSingle(kArmReachXMm) + ", Y 0 to " +
                                     text::plainSingle(kArmReachYMm) + " mm)");
    }
    const auto tube = text::toInt16(values_[2]);
    if (!tube)
      return refuse(recordLine_,
                    "the position number " + text::plain(values_[2]) + " is not a tube number");
    TrayPosition& p = tray_.positions[static_cast<std::size_t>(tray_.positionCount++)];
    p.X = static_cast<float>(x);
    p.Y = static_cast<float>(y);
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
  if (ok) ok = reader.finish();
  if (!ok) {
    tray = TrayGeometry{};
    return TrayLoadResult{false, reader.message()};
  }
  return TrayLoadResult{true, {}};
}

TrayLoadResult LoadTrayGeometry(const std::string& path, TrayGeometry& tray) {
  std::string text;
  if (!ReadWholeFile(path, text)) {
    tray = TrayGeometry{};
    return TrayLoadResult{false, "The tray geometry file " + path + " could not be read."};
  }
  return ParseTrayGeometry(text, path, tray);
}

}  // namespace zorvel

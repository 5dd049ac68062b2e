#include "core/autosampler/tray_geometry_file.h"

#include <string_view>
#include <vector>

#include "core/files/file_output.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

// Free-format input: values separated by commas, blanks, tabs or line ends.
std::vector<std::string_view> freeFormatValues(std::string_view text) {
  std::vector<std::string_view> values;
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && (text[i] == ',' || text[i] == ' ' || text[i] == '\t' ||
                               text[i] == '\r' || text[i] == '\n'))
      ++i;
    const std::size_t start = i;
    while (i < text.size() && text[i] != ',' && text[i] != ' ' && text[i] != '\t' &&
           text[i] != '\r' && text[i] != '\n')
      ++i;
    if (i > start) values.push_back(text.substr(start, i - start));
  }
  return values;
}

}  // namespace

void ParseTrayGeometry(std::string_view text, TrayGeometry& tray) {
  tray = TrayGeometry{};
  const auto values = freeFormatValues(text);
  std::int16_t largest = 0;
  for (std::size_t k = 0; k + 2 < values.size() && tray.positionCount <= kMaxTrayPosition; k += 3) {
    TrayPosition& p = tray.positions[static_cast<std::size_t>(tray.positionCount)];
    // A value that is not a number reads as 0, as sequential numeric input does.
    p.X = static_cast<float>(text::parseNumber(values[k]).value_or(0.0));
    p.Y = static_cast<float>(text::parseNumber(values[k + 1]).value_or(0.0));
    p.Number = text::toInt16(text::parseNumber(values[k + 2]).value_or(0.0)).value_or(0);
    if (p.Number > largest) largest = p.Number;
    ++tray.positionCount;
  }
  tray.TubeCount = largest;
}

bool LoadTrayGeometry(const std::string& path, TrayGeometry& tray) {
  std::string text;
  if (!ReadWholeFile(path, text)) return false;
  ParseTrayGeometry(text, tray);
  return true;
}

}  // namespace zorvel

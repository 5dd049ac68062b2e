#include "sim/bench_file.h"

#include <cctype>

#include "core/state/app_state.h"
#include "core/text/number_format.h"

namespace zorvel::sim {

namespace {

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) {
    text.remove_prefix(1);
  }
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) {
    text.remove_suffix(1);
  }
  return text;
}

std::string_view nextWord(std::string_view& text) {
  text = trimmed(text);
  std::size_t end = 0;
  while (end < text.size() && !std::isspace(static_cast<unsigned char>(text[end]))) ++end;
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(end);
  return word;
}

bool sameLetters(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) !=
        std::tolower(static_cast<unsigned char>(b[i]))) {
      return false;
    }
  }
  return true;
}

// Reads "Blue=0.5 3=1 solvent" into the sample; the text of the first bad item, or empty.
std::string readAmounts(std::string_view text, Sample& sample) {
  for (std::string_view item = nextWord(text); !item.empty(); item = nextWord(text)) {
    if (sameLetters(item, "solvent")) {
      sample.water = false;
      continue;
    }
    const std::size_t equals = item.find('=');
    const int dye = equals == std::string_view::npos ? -1 : DyeIndex(item.substr(0, equals));
    const auto amount = dye < 0 ? std::nullopt : text::parseNumber(item.substr(equals + 1));
    if (!amount || *amount < 0) return std::string(item);
    sample.dyes[static_cast<std::size_t>(dye)] += *amount;
  }
  return {};
}

// One "cuvette ..." or "tube N ..." line; the problem, or empty.
std::string readLine(std::string_view line, Bench& bench, bool& firstCuvette) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) return "no \":\" before the amounts";
  std::string_view head = line.substr(0, colon);
  const std::string_view kind = nextWord(head);
  Sample sample;
  const std::string problem = readAmounts(line.substr(colon + 1), sample);
  if (!problem.empty()) return "cannot read \"" + problem + "\"";
  if (sameLetters(kind, "cuvette")) {
    sample.label = std::string(trimmed(head));
    if (firstCuvette) {
      bench.cuvette = sample;
      bench.cuvetteQueue.clear();
      firstCuvette = false;
    } else {
      bench.cuvetteQueue.push_back(sample);
    }
    return {};
  }
  if (!sameLetters(kind, "tube")) return "a line starts with \"cuvette\" or \"tube\"";
  const std::string_view number = nextWord(head);
  const auto tube = text::parseNumber(number);
  if (!tube || *tube < 0 || *tube > 500 || *tube != static_cast<int>(*tube)) {
    return "no tube number 0..500";
  }
  sample.label = std::string(trimmed(head));
  if (sample.label.empty()) sample.label = "tube " + std::string(number);
  bench.tubes[static_cast<int>(*tube)] = sample;
  return {};
}

}  // namespace

std::string_view BenchFileHelp() {
  return "Bench file lines (blank lines and lines starting with # are ignored):\n"
         "  cuvette LABEL: COLOUR=AMOUNT ...   queues a cuvette; the first is in the holder\n"
         "  tube N LABEL: COLOUR=AMOUNT ...    what tube N of the tray holds (0: rinse)\n"
         "COLOUR is a colour name (Tissue, Blue, Blue-Green, ... Violet) or 0..13; the word\n"
         "\"solvent\" among the amounts means the sample is not in water.\n"
         "Example:\n"
         "  cuvette blank:\n"
         "  cuvette pure Blue: Blue=1\n"
         "  tube 1 control: Blue=0.5 Red=0.2";
}

int DyeIndex(std::string_view colour) {
  AppState names;
  FillColourTables(names);
  for (int i = 0; i < kDyeCount; ++i) {
    if (sameLetters(colour, names.ColourNames[static_cast<std::size_t>(i)])) return i;
  }
  const auto index = text::parseNumber(colour);
  if (colour.empty() || !std::isdigit(static_cast<unsigned char>(colour[0])) || !index ||
      *index >= kDyeCount || *index != static_cast<int>(*index)) {
    return -1;
  }
  return static_cast<int>(*index);
}

void ParseBenchFile(std::string_view text, Bench& bench, std::vector<std::string>& problems) {
  bool firstCuvette = true;
  int lineNumber = 0;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    ++lineNumber;
    if (line.empty() || line.front() == '#') continue;
    const std::string problem = readLine(line, bench, firstCuvette);
    if (!problem.empty()) problems.push_back("line " + text::plain(lineNumber) + ": " + problem);
  }
}

}  // namespace zorvel::sim

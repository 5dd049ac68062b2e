#include "core/files/torn_tail.h"

namespace zorvel {

std::string_view FileLineEnding(std::string_view bytes) {
  const std::size_t at = bytes.find_first_of("\r\n");
  if (at == std::string_view::npos) return {};
  if (bytes[at] == '\n') return "\n";
  return at + 1 < bytes.size() && bytes[at + 1] == '\n' ? "\r\n" : "\r";
}

std::size_t WholeLinesLength(std::string_view bytes) {
  const std::size_t last = bytes.find_last_of("\r\n");
  return last == std::string_view::npos ? 0 : last + 1;
}

std::string_view LastPartialLine(std::string_view bytes) {
  return bytes.substr(WholeLinesLength(bytes));
}

TailRepair PlanTailRepair(std::string_view bytes, std::string_view ending, bool lastLineWhole) {
  TailRepair repair;
  repair.keep = bytes.size();
  const std::size_t whole = WholeLinesLength(bytes);
  if (whole < bytes.size()) {
    if (lastLineWhole && !ending.empty()) {
      repair.complete = std::string(ending);
    } else {
      repair.keep = whole;
    }
    return repair;
  }
  // The CR of a CR LF line arrived but its LF did not: the line itself is whole.
  if (ending == "\r\n" && !bytes.empty() && bytes.back() == '\r') repair.complete.push_back('\n');
  return repair;
}

std::string VisibleBytes(std::string_view bytes) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string out;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte < 0x7f && c != '\\') {
      out.push_back(c);
    } else if (c == '\t') {
      out.push_back('\\');
      out.push_back('t');
    } else {
      for (const char part : {'\\', 'x', kHex[byte >> 4], kHex[byte & 0xf]}) out.push_back(part);
    }
  }
  return out;
}

}  // namespace zorvel

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// What is left of a data file's last line after a crash, a failed write or a careless copy,
// and what to do about it. Only bytes after the file's last line ending are ever removed, so a
// whole line, and the header above it, always stays.
namespace zorvel {

// The line ending the file's lines actually end with, taken from its first line: "\r\n", "\r"
// or "\n"; empty when the file holds no line ending at all.
std::string_view FileLineEnding(std::string_view bytes);

// The length of the file up to and including its last line ending of either kind (CR or LF);
// 0 when it holds none.
std::size_t WholeLinesLength(std::string_view bytes);

// The line after the last line ending (empty when the file ends with one).
std::string_view LastPartialLine(std::string_view bytes);

// How a file's end is made whole: keep the first `keep` bytes, then add `complete`.
struct TailRepair {
  std::size_t keep = 0;
  std::string complete;
  bool changes(std::size_t size) const { return keep != size || !complete.empty(); }
};

// The repair of a file whose lines end with `ending`. A last line without its ending is
// completed when `lastLineWhole` (it parses as a whole record) and cut off otherwise; a CR LF
// file whose last line lost only its LF gets the LF back.
TailRepair PlanTailRepair(std::string_view bytes, std::string_view ending, bool lastLineWhole);

// The bytes as a log can hold them: printable characters as they are, a TAB as "\t", any other
// byte as "\xNN".
std::string VisibleBytes(std::string_view bytes);

}  // namespace zorvel

#pragma once

#include <string_view>

namespace zorvel {

// The printed summary and result lines go through this seam: text at the current position,
// Tab(n) to a column, line ends, pages, and the end of the document that sends it.
class Printer {
 public:
  virtual ~Printer() = default;

  virtual void print(std::string_view text) = 0;
  // Moves to 1-based column n; a position already past it continues on the next line.
  virtual void tab(int column) = 0;
  virtual void endLine() = 0;
  virtual void newPage() = 0;
  virtual void endDocument() = 0;
};

}  // namespace zorvel

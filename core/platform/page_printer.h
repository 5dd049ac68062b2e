#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/platform/printer.h"

namespace zorvel {

// The test printer: pages of plain text lines, so a printout can be compared character for
// character.
class PagePrinter final : public Printer {
 public:
  void print(std::string_view text) override;
  void tab(int column) override;
  void endLine() override;
  void newPage() override;
  void endDocument() override;

  // Finished documents; each is a list of pages, each page a list of lines.
  using Page = std::vector<std::string>;
  std::vector<std::vector<Page>> documents;
  // The document being printed (pages so far, the current line included when not empty).
  std::vector<Page> current() const;
  // Every line of the current document's pages joined with "\n", for quick comparisons.
  std::string currentText() const;

 private:
  std::vector<Page> pages_{Page{}};
  std::string line_;
};

}  // namespace zorvel

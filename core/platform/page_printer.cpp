#include "core/platform/page_printer.h"

namespace zorvel {

void PagePrinter::print(std::string_view text) {
  line_.append(text);
}

void PagePrinter::tab(int column) {
  const std::size_t target = column > 1 ? static_cast<std::size_t>(column - 1) : 0;
  if (line_.size() > target) endLine();
  line_.resize(target, ' ');
}

void PagePrinter::endLine() {
  pages_.back().push_back(line_);
  line_.clear();
}

void PagePrinter::newPage() {
  if (!line_.empty()) endLine();
  pages_.push_back(Page{});
}

void PagePrinter::endDocument() {
  if (!line_.empty()) endLine();
  documents.push_back(pages_);
  pages_ = {Page{}};
}

std::vector<PagePrinter::Page> PagePrinter::current() const {
  std::vector<Page> pages = pages_;
  if (!line_.empty()) pages.back().push_back(line_);
  return pages;
}

std::string PagePrinter::currentText() const {
  std::string text;
  for (const auto& page : current()) {
    for (const auto& line : page) {
      text += line;
      text += '\n';
    }
  }
  return text;
}

}  // namespace zorvel

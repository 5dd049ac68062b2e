#pragma once

#include <QString>
#include <functional>
#include <string>

#include "core/platform/page_printer.h"
#include "core/platform/printer.h"

namespace zorvel::ui {

// The desktop printer: lines are laid out as plain text pages (the same model the tests
// check) and sent, at the end of the document, to the system printer or to a PDF file.
class QtPrinter final : public Printer {
 public:
  // An empty pdfPath prints on the system's default printer. Otherwise each document goes to
  // a file of its own (NextFreePrintFile): pdfPath, then its "-2", "-3", ... forms.
  explicit QtPrinter(QString pdfPath = {}) : pdfPath_(std::move(pdfPath)) {}
  // Told the name of every file a document was written to (the program log records it).
  void setFileWritten(std::function<void(const std::string&)> fileWritten) {
    fileWritten_ = std::move(fileWritten);
  }

  void print(std::string_view text) override { pages_.print(text); }
  void tab(int column) override { pages_.tab(column); }
  void endLine() override { pages_.endLine(); }
  void newPage() override { pages_.newPage(); }
  void endDocument() override;

  int documentsSent() const { return sent_; }

 private:
  QString pdfPath_;
  PagePrinter pages_;
  int sent_ = 0;
  int nextFile_ = 1;
  std::function<void(const std::string&)> fileWritten_;
};

}  // namespace zorvel::ui

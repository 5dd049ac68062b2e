#pragma once

#include <QString>
#include <functional>
#include <string>

#include "core/platform/page_printer.h"
#include "core/platform/printer.h"
#include "ui/platform/pdf_pages.h"

namespace zorvel::ui {

// The programs' printer: lines are laid out as plain text pages (the same model the tests
// check) and, at the end of the document, written as a PDF by `writePdf`: to a file of the
// operator's, or handed to the system's default printer through its print command ("lp"). No
// step of it waits without a bound, and what goes wrong is reported, never shown in a box of
// its own.
class QtPrinter final : public Printer {
 public:
  // An empty pdfPath prints on the system's default printer. Otherwise each document goes to
  // a file of its own (NextFreePrintFile): pdfPath, then its "-2", "-3", ... forms.
  QtPrinter(QString pdfPath, PdfWriter writePdf)
      : pdfPath_(std::move(pdfPath)), writePdf_(std::move(writePdf)) {}
  // Told the name of every file a document was written to (the program log records it).
  void setFileWritten(std::function<void(const std::string&)> fileWritten) {
    fileWritten_ = std::move(fileWritten);
  }
  // Told why a document could not be written or printed (the caller logs or shows it).
  void setProblemReported(std::function<void(const std::string&)> problemReported) {
    problemReported_ = std::move(problemReported);
  }
  // The command that queues a PDF on the default printer; "lp" unless a test says otherwise.
  void setPrintCommand(QString command) { printCommand_ = std::move(command); }

  void print(std::string_view text) override { pages_.print(text); }
  void tab(int column) override { pages_.tab(column); }
  void endLine() override { pages_.endLine(); }
  void newPage() override { pages_.newPage(); }
  void endDocument() override;

  int documentsSent() const { return sent_; }

 private:
  QString pdfPath_;
  PdfWriter writePdf_;
  PagePrinter pages_;
  int sent_ = 0;
  int nextFile_ = 1;
  std::function<void(const std::string&)> fileWritten_;
  std::function<void(const std::string&)> problemReported_;
  QString printCommand_ = "lp";

  void report(const std::string& problem);
};

}  // namespace zorvel::ui

#pragma once

#include <QString>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/platform/page_printer.h"

namespace zorvel::ui {

using Pages = std::vector<PagePrinter::Page>;

// Writes one printout's pages as a PDF file; false when the file could not be written.
using PdfWriter = std::function<bool(const std::string& file, const Pages& pages)>;

// The pages as the PDF writer program reads them on its standard input: each line ends with a
// line feed, and a line holding only a form feed ends a page.
std::string PagesAsText(const Pages& pages);
Pages PagesFromText(std::string_view text);

// A writer that hands the pages to `program` (run as "program FILE") and waits a bounded time
// for it. Painting needs fonts and a GUI application; programs without windows leave it to
// that program so that they themselves load no GUI library.
PdfWriter PdfWriterProgram(QString program);

// The PDF writer program as installed and as the build lays it out: under
// ../libexec/zorvel/ from the running program's folder.
QString InstalledPdfWriterProgram();

}  // namespace zorvel::ui

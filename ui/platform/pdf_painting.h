#pragma once

#include <string>

#include "ui/platform/pdf_pages.h"

namespace zorvel::ui {

// Paints the pages into a PDF file in this process, in a fixed-pitch font so that tab columns
// line up as they do on paper. Needs a GUI application (the fonts come from it).
bool PaintPdf(const std::string& file, const Pages& pages);

// The writer for the desktop program: it paints on the window thread, whichever thread prints.
PdfWriter PaintingPdfWriter();

}  // namespace zorvel::ui

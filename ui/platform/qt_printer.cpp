#include "ui/platform/qt_printer.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>
#include <QPrinter>

#include "core/platform/print_file_name.h"
#include "ui/platform/gui_thread.h"

namespace zorvel::ui {

namespace {

// Paints the pages in a fixed-pitch font so that tab columns line up as they do on paper.
void paintPages(QPrinter& printer, const std::vector<PagePrinter::Page>& pages) {
  QPainter painter;
  if (!painter.begin(&printer)) return;
  QFont font("Courier New");
  font.setStyleHint(QFont::TypeWriter);
  font.setPointSize(10);
  painter.setFont(font);
  const int lineHeight = QFontMetrics(font, &printer).lineSpacing();
  const int pageHeight = printer.pageLayout().paintRectPixels(printer.resolution()).height();
  bool first = true;
  for (const auto& page : pages) {
    if (!first) printer.newPage();
    first = false;
    int y = lineHeight;
    for (const auto& line : page) {
      if (y > pageHeight) {
        printer.newPage();
        y = lineHeight;
      }
      painter.drawText(0, y, QString::fromLatin1(line.data(), static_cast<int>(line.size())));
      y += lineHeight;
    }
  }
  painter.end();
}

}  // namespace

void QtPrinter::endDocument() {
  pages_.endDocument();
  const auto pages = pages_.documents.back();
  pages_.documents.clear();
  bool hasText = false;
  for (const auto& page : pages) hasText = hasText || !page.empty();
  if (!hasText) return;
  std::string file;
  if (!pdfPath_.isEmpty()) file = NextFreePrintFile(pdfPath_.toStdString(), nextFile_);
  onGuiThread([&] {
    QPrinter printer(QPrinter::HighResolution);
    if (!file.empty()) {
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(QString::fromStdString(file));
    }
    paintPages(printer, pages);
  });
  ++sent_;
  if (!file.empty() && fileWritten_) fileWritten_(file);
}

}  // namespace zorvel::ui

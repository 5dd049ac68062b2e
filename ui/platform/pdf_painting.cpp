#include "ui/platform/pdf_painting.h"

#include <QFont>
#include <QFontMetrics>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>

#include "ui/platform/gui_thread.h"

namespace zorvel::ui {

bool PaintPdf(const std::string& file, const Pages& pages) {
  QPdfWriter pdf(QString::fromStdString(file));
  pdf.setResolution(1200);
  pdf.setCreator("ZORVEL");
  QPainter painter;
  if (!painter.begin(&pdf)) return false;
  QFont font("Courier New");
  font.setStyleHint(QFont::TypeWriter);
  font.setPointSize(10);
  painter.setFont(font);
  const int lineHeight = QFontMetrics(font, &pdf).lineSpacing();
  const int pageHeight = pdf.pageLayout().paintRectPixels(pdf.resolution()).height();
  bool first = true;
  for (const auto& page : pages) {
    if (!first) pdf.newPage();
    first = false;
    int y = lineHeight;
    for (const auto& line : page) {
      if (y > pageHeight) {
        pdf.newPage();
        y = lineHeight;
      }
      painter.drawText(0, y, QString::fromLatin1(line.data(), static_cast<int>(line.size())));
      y += lineHeight;
    }
  }
  return painter.end();
}

PdfWriter PaintingPdfWriter() {
  return [](const std::string& file, const Pages& pages) {
    return onGuiThread([&] { return PaintPdf(file, pages); });
  };
}

}  // namespace zorvel::ui

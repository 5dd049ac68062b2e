// zorvel-pdf FILE: writes the printout on standard input (pages as zorvel-run hands them over)
// as a PDF file. It holds the painting, and so the GUI libraries, that zorvel-run itself does
// without. Exit status 0 when the file was written, 1 when not, 2 when used wrongly.
#include <QGuiApplication>
#include <iostream>
#include <iterator>
#include <string>

#include "ui/platform/pdf_painting.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: zorvel-pdf FILE.pdf < pages\n";
    return 2;
  }
  const std::string text{std::istreambuf_iterator<char>(std::cin),
                         std::istreambuf_iterator<char>()};
  // The fonts are all it needs of a GUI; there is no screen to show anything on.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QGuiApplication app(argc, argv);
  return zorvel::ui::PaintPdf(argv[1], zorvel::ui::PagesFromText(text)) ? 0 : 1;
}

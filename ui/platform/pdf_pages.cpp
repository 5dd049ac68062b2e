#include "ui/platform/pdf_pages.h"

#include <QCoreApplication>
#include <QProcess>

namespace zorvel::ui {

namespace {

// As long as the system's print command is given: a writer that does not finish within it is
// reported rather than waited on.
constexpr int kWriterMs = 30000;

}  // namespace

std::string PagesAsText(const Pages& pages) {
  std::string text;
  for (const auto& page : pages) {
    for (const auto& line : page) text += line + '\n';
    text += "\f\n";
  }
  return text;
}

Pages PagesFromText(std::string_view text) {
  Pages pages;
  PagePrinter::Page page;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line == "\f") {
      pages.push_back(std::move(page));
      page.clear();
    } else {
      page.emplace_back(line);
    }
  }
  if (!page.empty()) pages.push_back(std::move(page));
  return pages;
}

PdfWriter PdfWriterProgram(QString program) {
  return [program](const std::string& file, const Pages& pages) {
    QProcess writer;
    // What the writer's GUI libraries say about the desktop is no concern of this program.
    writer.setStandardOutputFile(QProcess::nullDevice());
    writer.setStandardErrorFile(QProcess::nullDevice());
    writer.start(program, {QString::fromStdString(file)});
    if (!writer.waitForStarted(kWriterMs)) return false;
    const std::string text = PagesAsText(pages);
    writer.write(text.data(), static_cast<qint64>(text.size()));
    writer.closeWriteChannel();
    if (!writer.waitForFinished(kWriterMs)) {
      writer.kill();
      writer.waitForFinished(1000);
      return false;
    }
    return writer.exitStatus() == QProcess::NormalExit && writer.exitCode() == 0;
  };
}

QString InstalledPdfWriterProgram() {
  return QCoreApplication::applicationDirPath() + "/../libexec/zorvel/zorvel-pdf";
}

}  // namespace zorvel::ui

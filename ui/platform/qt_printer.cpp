#include "ui/platform/qt_printer.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryFile>

#include "core/platform/print_file_name.h"

namespace zorvel::ui {

namespace {

// The system's print command takes the file at once into its queue; a spooler that does not
// answer within this long is reported rather than waited on.
constexpr int kPrintCommandMs = 30000;

// Hands a PDF to the system's default printer through its print command; empty when it was
// queued, otherwise why not.
std::string sendToPrinter(const QString& file, const QString& command) {
  QProcess lp;
  lp.start(command, {file});
  if (!lp.waitForStarted(kPrintCommandMs))
    return "the print command \"" + command.toStdString() + "\" could not be started";
  if (!lp.waitForFinished(kPrintCommandMs)) {
    lp.kill();
    lp.waitForFinished(1000);
    return "the print command \"" + command.toStdString() + "\" did not finish within " +
           std::to_string(kPrintCommandMs / 1000) + " seconds";
  }
  if (lp.exitStatus() != QProcess::NormalExit || lp.exitCode() != 0) {
    const QString said = QString::fromLocal8Bit(lp.readAllStandardError()).trimmed();
    return "the print command \"" + command.toStdString() + "\" refused it" +
           (said.isEmpty() ? std::string() : ": " + said.toStdString());
  }
  return {};
}

}  // namespace

void QtPrinter::endDocument() {
  pages_.endDocument();
  const auto pages = pages_.documents.back();
  pages_.documents.clear();
  bool hasText = false;
  for (const auto& page : pages) hasText = hasText || !page.empty();
  if (!hasText) return;
  if (!pdfPath_.isEmpty()) {
    const std::string file = NextFreePrintFile(pdfPath_.toStdString(), nextFile_);
    if (!writePdf_(file, pages))
      return report("The printout could not be written to " + file + ".");
    ++sent_;
    if (fileWritten_) fileWritten_(file);
    return;
  }
  // The system printer takes a PDF; it is written beside the other temporary files and removed
  // once the print command has queued it.
  QTemporaryFile file(QDir::tempPath() + "/zorvel-printout-XXXXXX.pdf");
  if (!file.open()) return report("The printout could not be prepared: no temporary file.");
  file.close();
  if (!writePdf_(file.fileName().toStdString(), pages))
    return report("The printout could not be prepared in " + file.fileName().toStdString() + ".");
  if (const std::string problem = sendToPrinter(file.fileName(), printCommand_); !problem.empty())
    return report("The printout was not printed: " + problem + ".");
  ++sent_;
}

void QtPrinter::report(const std::string& problem) {
  if (problemReported_) problemReported_(problem);
}

}  // namespace zorvel::ui

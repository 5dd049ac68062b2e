#include "ui/start_up_preload.h"

#include <fontconfig/fontconfig.h>

#include <QFontDatabase>
#include <QImageReader>
#include <system_error>

namespace zorvel::ui {

StartUpPreload::StartUpPreload() {
  start([] { FcInit(); });
}

StartUpPreload::~StartUpPreload() {
  wait();
}

void StartUpPreload::applicationMade() {
  // Qt's font list is filled from fontconfig's: the configuration is read first.
  wait();
  start([] {
    QFontDatabase::families();
    QImageReader::supportedImageFormats();
  });
}

void StartUpPreload::wait() {
  if (thread_.joinable()) thread_.join();
}

void StartUpPreload::start(void (*work)()) {
  try {
    thread_ = std::thread(work);
  } catch (const std::system_error&) {
    // No second thread to be had: Qt does the work itself when it first needs it.
  }
}

}  // namespace zorvel::ui

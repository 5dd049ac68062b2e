#include "ui/windows/window_title.h"

namespace zorvel::ui {

QString WindowTitle(const QString& title, bool simulated) {
  return simulated ? title + " - SIMULATED instruments" : title;
}

}  // namespace zorvel::ui

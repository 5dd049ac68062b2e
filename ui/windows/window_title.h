#pragma once

#include <QString>

namespace zorvel::ui {

// A window's title, saying so when the instruments are simulated: a screenshot of a simulated
// run must never pass for a real one.
QString WindowTitle(const QString& title, bool simulated);

}  // namespace zorvel::ui

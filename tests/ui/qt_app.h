#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace zorvel::testing {

// One QApplication for the whole test program (offscreen platform).
QApplication& qtApp();

// Runs `act` on the first visible top-level widget with the given object name once it shows
// (a modal dialog opened by the code under test), polling the event loop.
void whenShown(const QString& objectName, std::function<void(QWidget*)> act);

}  // namespace zorvel::testing

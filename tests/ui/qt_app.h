#pragma once

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace zorvel::testing {

// One QApplication for the whole test program (offscreen platform).
QApplication& qtApp();

// Runs the event loop until `done` holds or timeoutMs passes; false on a time-out.
bool waitUntil(const std::function<bool()>& done, int timeoutMs);

// QTest's QTRY_ macros tell a time-out to QTest alone and return: under GoogleTest the test
// then went on as passed. These wait the same way and fail the test.
#define ZORVEL_TRY_VERIFY(expr, timeoutMs)                                                      \
  ASSERT_TRUE(::zorvel::testing::waitUntil([&] { return static_cast<bool>(expr); }, timeoutMs)) \
      << "never true: " #expr
#define ZORVEL_TRY_COMPARE(actual, expected, timeoutMs)                                        \
  ASSERT_TRUE(::zorvel::testing::waitUntil([&] { return (actual) == (expected); }, timeoutMs)) \
      << "never equal: " #actual " and " #expected

// Runs `act` on the first visible top-level widget with the given object name once it shows
// (a modal dialog opened by the code under test), polling the event loop.
void whenShown(const QString& objectName, std::function<void(QWidget*)> act);

}  // namespace zorvel::testing

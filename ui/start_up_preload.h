#pragma once

#include <thread>

namespace zorvel::ui {

// Work Qt does on the main thread when the main window first needs it, done beforehand on a
// second thread while the main thread waits on the display server and the session bus: reading
// the machine's font configuration (fontconfig's sixty-odd files of XML and its font caches,
// some 3 ms), filling Qt's list of fonts, and loading the image format plugins that the menu bar
// and the frames read their pictures through. The window and what it shows are the same either
// way; on one core the work is merely done in another order.
class StartUpPreload {
 public:
  // Starts reading the font configuration, which needs no application object.
  StartUpPreload();
  ~StartUpPreload();
  StartUpPreload(const StartUpPreload&) = delete;
  StartUpPreload& operator=(const StartUpPreload&) = delete;

  // Once the application object is made: the rest, which needs it.
  void applicationMade();
  // Returns once everything is loaded; called before the first window is built, so that the
  // window's own font and picture loading never waits on a half-done step.
  void wait();

 private:
  void start(void (*work)());

  std::thread thread_;
};

}  // namespace zorvel::ui

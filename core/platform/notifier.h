#pragma once

#include <string>

namespace zorvel {

// Tells a person away from the screen something worth knowing (the desktop's notifications).
// What to tell and when is the run's business; how it reaches the person is the platform's.
// May be called from any thread; never waits for the person or the desktop.
class Notifier {
 public:
  virtual ~Notifier() = default;
  virtual void notify(const std::string& summary, const std::string& body) = 0;
};

}  // namespace zorvel

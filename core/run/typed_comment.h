#pragma once

#include <mutex>
#include <string>

namespace zorvel {

// What the operator has typed in the comment box. The window pushes each change from its own
// thread while the run reads it into a record on the run's thread.
class TypedComment {
 public:
  void set(const std::string& text) {
    std::lock_guard<std::mutex> lock(mutex_);
    text_ = text;
  }
  std::string get() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return text_;
  }

 private:
  mutable std::mutex mutex_;
  std::string text_;
};

}  // namespace zorvel

#include "ui/windows/naming_operator.h"

namespace zorvel::ui {

void NamingOperator::setSubject(const std::string& caption) {
  std::string name = caption;
  while (!name.empty() && (name.back() == ':' || name.back() == ' ')) name.pop_back();
  const std::lock_guard<std::mutex> lock(mutex_);
  subject_ = name;
  committer_ = std::this_thread::get_id();
}

int NamingOperator::messageBox(const MessageBoxRequest& box) {
  std::string subject;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (committer_ == std::this_thread::get_id()) subject = subject_;
  }
  if (subject.empty()) return inner_.messageBox(box);
  MessageBoxRequest named = box;
  named.text = subject + ": " + box.text;
  return inner_.messageBox(named);
}

}  // namespace zorvel::ui

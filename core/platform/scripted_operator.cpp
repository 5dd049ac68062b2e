#include "core/platform/scripted_operator.h"

namespace zorvel {

int firstButtonAnswer(BoxButtons buttons) {
  switch (buttons) {
    case BoxButtons::Ok:
    case BoxButtons::OkCancel:
      return answer::kOk;
    case BoxButtons::AbortRetryIgnore:
      return answer::kAbort;
    case BoxButtons::YesNoCancel:
    case BoxButtons::YesNo:
      return answer::kYes;
    case BoxButtons::RetryCancel:
      return answer::kRetry;
  }
  return answer::kOk;
}

int ScriptedOperator::messageBox(const MessageBoxRequest& box) {
  shown.push_back(Shown{Shown::Kind::Message, box, {}});
  if (answers_.empty()) return firstButtonAnswer(box.buttons);
  const int code = answers_.front();
  answers_.pop_front();
  return code;
}

std::string ScriptedOperator::inputBox(const std::string& prompt, const std::string& title,
                                       const std::string& defaultText) {
  shown.push_back(Shown{Shown::Kind::Input,
                        MessageBoxRequest{prompt, title, BoxIcon::None, BoxButtons::OkCancel},
                        {}});
  if (inputs_.empty()) return defaultText;
  std::string text = inputs_.front();
  inputs_.pop_front();
  return text;
}

std::string ScriptedOperator::fileDialog(const FileDialogRequest& request) {
  shown.push_back(Shown{Shown::Kind::FileDialog, {}, request});
  if (files_.empty()) return {};
  std::string path = files_.front();
  files_.pop_front();
  return path;
}

std::vector<MessageBoxRequest> ScriptedOperator::messages() const {
  std::vector<MessageBoxRequest> boxes;
  for (const auto& s : shown) {
    if (s.kind == Shown::Kind::Message) boxes.push_back(s.box);
  }
  return boxes;
}

}  // namespace zorvel

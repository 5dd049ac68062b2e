#pragma once

#include <string>

#include "core/method/method_controls.h"

namespace zorvel {

// What the method editor shows on METHODFORM; the Qt window implements it, tests record it.
class MethodEditorView {
 public:
  virtual ~MethodEditorView() = default;

  virtual void showText(MethodControl box, const std::string& text) = 0;
  virtual std::string text(MethodControl box) const = 0;
  // Selects the whole text of a box, so that the next keystroke replaces it.
  virtual void selectText(MethodControl box) = 0;
  // An option group's chosen option by its index; a check box 1 checked, 0 not.
  virtual void showOption(MethodControl group, int index) = 0;
  virtual void setControlVisible(MethodControl control, bool visible) = 0;
  virtual void setControlEnabled(MethodControl control, bool enabled) = 0;
  virtual void focus(MethodControl control) = 0;
  virtual void setDefaultButton(MethodControl button) = 0;
  // The hidden panel QXOnly1 with "Number of Reps:".
  virtual void setQXPanelVisible(bool visible) = 0;
  // The method-file label.
  virtual void showMethodFile(const std::string& text) = 0;
  // Shows the colour window modally; it attaches itself to the editor's colour presenter.
  virtual void showColourWindow() = 0;
};

}  // namespace zorvel

#pragma once

class QWidget;

namespace zorvel::ui {

// Tab enters each option group of the window on its checked button (the first button while none
// is checked), and the arrow keys then move the choice within the group; the other buttons of a
// group are reached by the arrows or the mouse, not by Tab. Kept true as the choices change.
void KeepTabOnCheckedOptions(QWidget* window);

}  // namespace zorvel::ui

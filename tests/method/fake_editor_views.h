#pragma once

#include <array>
#include <functional>
#include <map>
#include <string>

#include "core/method/colour_view.h"
#include "core/method/method_editor_view.h"

namespace zorvel::testing {

// Records what the method editor shows.
class FakeEditorView : public MethodEditorView {
 public:
  void showText(MethodControl box, const std::string& t) override { texts[box] = t; }
  std::string text(MethodControl box) const override {
    const auto it = texts.find(box);
    return it == texts.end() ? std::string() : it->second;
  }
  void selectText(MethodControl box) override { selected = box; }
  void showOption(MethodControl group, int index) override { options[group] = index; }
  void setControlVisible(MethodControl c, bool v) override { visible[c] = v; }
  void setControlEnabled(MethodControl c, bool e) override { enabled[c] = e; }
  void focus(MethodControl c) override { focused = c; }
  void setDefaultButton(MethodControl b) override { defaultButton = b; }
  void setQXPanelVisible(bool v) override { qxVisible = v; }
  void showMethodFile(const std::string& t) override { methodFile = t; }
  void showColourWindow() override {
    ++colourWindows;
    if (onColourWindow) onColourWindow();
  }

  std::map<MethodControl, std::string> texts;
  std::map<MethodControl, int> options;
  std::map<MethodControl, bool> visible, enabled;
  MethodControl selected = MethodControl::Other, focused = MethodControl::Other,
                defaultButton = MethodControl::Other;
  bool qxVisible = false;
  std::string methodFile;
  int colourWindows = 0;
  std::function<void()> onColourWindow;
};

// Records what the colour window shows; slots 1..15.
class FakeColourView : public ColourView {
 public:
  struct Row {
    bool visible = false;
    std::string label;
    std::array<std::string, 5> boxes;  // by PairField
    int choice = -1;
  };
  void setRowVisible(int slot, bool v) override { rows.at(slot).visible = v; }
  void setRowLabel(int slot, const std::string& t) override { rows.at(slot).label = t; }
  void setBoxText(int slot, PairField f, const std::string& t) override {
    rows.at(slot).boxes.at(static_cast<std::size_t>(f)) = t;
  }
  void setColourChoice(int slot, int c) override { rows.at(slot).choice = c; }
  int colourChoice(int slot) const override { return rows.at(slot).choice; }
  void selectBox(int slot, PairField f) override { selected = {slot, static_cast<int>(f)}; }
  void focusBox(int slot, PairField f) override { focusedBox = {slot, static_cast<int>(f)}; }
  void focusColourList(int slot) override { focusedList = slot; }
  void setPagingEnabled(bool p, bool n) override {
    previous = p;
    next = n;
  }
  void close() override { closed = true; }

  std::array<Row, 16> rows{};
  std::pair<int, int> selected{0, 0}, focusedBox{0, 0};
  int focusedList = 0;
  bool previous = false, next = false, closed = false;
};

}  // namespace zorvel::testing

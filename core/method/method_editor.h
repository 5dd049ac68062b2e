#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/method/colour_presenter.h"
#include "core/method/method_editor_view.h"
#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

// The editor's own state beside the method record.
struct MethodEditorState {
  MethodSettings LoadedSettings;   // as loaded, for MethodChanged
  std::int16_t DeclaredCount = 0;  // No.Colors when the fixed table was last confirmed
  bool MethodChangedFlag = false;
  bool NewDataSet = false;       // the run writes a new data file set
  bool ColoursDeclared = false;  // "Set" / "Not Set"
  int FirstSampleNumber = -1;    // "Starting Number:"; -1 undefined
  bool QXPanelShown = false;
};

// How the current method came to be.
enum class MethodLoad { New, Edit, Append };

// Keys that toggle the hidden panel.
enum class EditorKey { Other, F4, F12 };
struct KeyModifiers {
  bool ctrl = false;
  bool alt = false;
  bool shift = false;
};

inline constexpr const char* kMessageNumeric = "Answer must be numeric.  Please try again.";
inline constexpr const char* kMessagePositiveInteger =
    "Answer must be a positive integer.  Please try again.";

// The rules of the method editor (METHODFORM) over the current MethodSettings: every field
// writes the record on each change, option groups show and hide what belongs to them, and the
// whole method is checked in a fixed order before it is saved.
class MethodEditor {
 public:
  MethodEditor(AppState& state, Operator& op);

  void setView(MethodEditorView* view) { view_ = view; }
  MethodEditorState& state() { return editor_; }
  const MethodEditorState& state() const { return editor_; }
  ColourPresenter& colours() { return colours_; }
  // "AS Setup" opens the autosampler window; unset, the button stays disabled.
  void setAutosamplerWindowOpener(std::function<void()> opener) {
    openAutosampler_ = std::move(opener);
  }

  // The checks a run makes beyond the editor's own (the fluorimeter's ranges, the autosampler
  // settings on the tray): "&Save As" saves no method a run would refuse.
  void setRunCheck(std::function<std::vector<std::string>(const MethodSettings&)> check) {
    runCheck_ = std::move(check);
  }

  // A method was made or loaded: the snapshot for MethodChanged and the colour window's copies.
  void methodLoaded(MethodLoad kind);
  // Fills every control from the record; LineEnding follows FileType.
  void showMethod();
  // The "Starting Number:" box and the number the next run gives its first sample are one value.
  void setFirstSampleNumber(int number);
  void ControlsVisible(bool enabled);

  // Change handlers, one per control kind. A box's text is taken when the operator commits it;
  // false when it is refused (after a warning), the record keeping the value in force.
  bool textCommitted(MethodControl box, const std::string& text);
  // What a box shows for the value in force.
  std::string textOf(MethodControl box) const;
  void optionClicked(MethodControl group, int index);
  void checkChanged(MethodControl box, bool checked);
  void focused(MethodControl box);
  // True when the key toggled the hidden panel (and is used up).
  bool keyTyped(const std::string& text, MethodControl focus);
  bool keyPressed(EditorKey key, KeyModifiers modifiers, MethodControl focus);
  // The menu item "QX Mods".
  void toggleQXPanel();

  // "&Edit Colors".
  void editColours();
  // The colour window, once shown, hands itself over.
  void colourWindowOpened(ColourView& view);
  // "AS Setup".
  void autosamplerSetup();

  bool ValidateAndSaveMethod();
  bool MethodChanged();
  // The first step of "&Save As": validated and saved when new or changed; false stops Save.
  bool saveMethodStep();

 private:
  MethodEditorView& view() { return view_ != nullptr ? *view_ : noView_; }
  void warn(const std::string& message, MethodControl box);
  bool numberChanged(MethodControl box, const std::string& text);
  void store(MethodControl box, double value);
  void showNumbers();
  void showOptions();
  void showScanType();
  void openColourWindow(std::optional<WavelengthFault> fault);
  void coloursConfirmed();

  class NoView final : public MethodEditorView {
    void showText(MethodControl, const std::string&) override {}
    std::string text(MethodControl) const override { return {}; }
    void selectText(MethodControl) override {}
    void showOption(MethodControl, int) override {}
    void setControlVisible(MethodControl, bool) override {}
    void setControlEnabled(MethodControl, bool) override {}
    void focus(MethodControl) override {}
    void setDefaultButton(MethodControl) override {}
    void setQXPanelVisible(bool) override {}
    void showMethodFile(const std::string&) override {}
    void showColourWindow() override {}
  };

  AppState& state_;
  Operator& op_;
  MethodEditorState editor_;
  ColourPresenter colours_;
  MethodEditorView* view_ = nullptr;
  NoView noView_;
  bool filling_ = false;
  bool autosamplerWindowShown_ = false;
  std::optional<WavelengthFault> pendingFault_;
  std::function<void()> openAutosampler_;
  std::function<std::vector<std::string>(const MethodSettings&)> runCheck_;
};

}  // namespace zorvel

#include <algorithm>

#include "core/method/method_commands.h"
#include "core/method/method_defaults.h"
#include "core/method/method_editor.h"
#include "core/method/method_file.h"
#include "core/state/file_dialogs.h"

// The editor's ways out: the colour window, the whole-method check with the save dialog, the
// change detection against the loaded method, and the autosampler window.
namespace zorvel {

using C = MethodControl;

void MethodEditor::methodLoaded(MethodLoad kind) {
  editor_.LoadedSettings = state_.Method;
  editor_.DeclaredCount = state_.Method.NoColors;
  ColourWindowState& colours = colours_.window();
  // Whatever the method came from, the colour window's next opening starts from its table,
  // so a table loaded from a file is never replaced by an older method's backup.
  colours.BackupPending = true;
  colours.Appending = kind == MethodLoad::Append;
  if (colours.Appending) colours.AppendPairs = state_.Method.FixedPairs;
  editor_.NewDataSet = kind == MethodLoad::New;
  // Colours read from a file are declared; a new method's are not.
  editor_.ColoursDeclared = kind != MethodLoad::New;
}

void MethodEditor::editColours() {
  openColourWindow(std::nullopt);
}

void MethodEditor::openColourWindow(std::optional<WavelengthFault> fault) {
  pendingFault_ = fault;
  view().showColourWindow();
  pendingFault_.reset();
}

void MethodEditor::colourWindowOpened(ColourView& window) {
  colours_.open(window, editor_.ColoursDeclared || colours_.window().Appending);
  if (pendingFault_) colours_.showFault(*pendingFault_);
}

void MethodEditor::coloursConfirmed() {
  editor_.ColoursDeclared = true;
  editor_.DeclaredCount = state_.Method.NoColors;
  view().focus(C::Save);
  view().setDefaultButton(C::Save);
}

void MethodEditor::autosamplerSetup() {
  if (!openAutosampler_) return;
  // A method that was read for cuvettes carries no autosampler settings of its own.
  if (!autosamplerWindowShown_ && editor_.LoadedSettings.DeliveryMethod != Delivery::Autosampler)
    SetAutosamplerDefaults(state_);
  autosamplerWindowShown_ = true;
  openAutosampler_();
}

bool MethodEditor::ValidateAndSaveMethod() {
  const MethodSettings& m = state_.Method;
  if (m.Fixed && !editor_.ColoursDeclared) {
    op_.message("You must set the wavelength information.", "ZORVEL ERROR", BoxIcon::Exclamation);
    view().focus(C::Colors_Button);
    openColourWindow(std::nullopt);
    return false;
  }
  if (m.Fixed && !editor_.NewDataSet && editor_.DeclaredCount != m.NoColors) {
    op_.message(
        "Number of wavelengths has changed.  Please confirm that fixed wavelength information is "
        "correct.",
        "ZORVEL ERROR", BoxIcon::Exclamation);
    editor_.DeclaredCount = m.NoColors;
    view().focus(C::Colors_Button);
    openColourWindow(std::nullopt);
    return false;
  }
  std::optional<WavelengthFault> fault;
  const std::optional<MethodProblem> problem =
      FirstMethodProblem(m, editor_.FirstSampleNumber, colours_.window().Extremes, [this, &fault] {
        fault = colours_.CheckWavelengths();
        return !fault;
      });
  if (problem) {
    op_.message(problem->message, "ZORVEL ERROR", BoxIcon::Exclamation);
    if (problem->wavelengths) {
      openColourWindow(fault);
    } else {
      view().focus(problem->focus);
    }
    return false;
  }
  if (runCheck_) {
    const std::vector<std::string> refused = runCheck_(m);
    for (const std::string& message : refused)
      op_.message(message, "ZORVEL ERROR", BoxIcon::Exclamation);
    if (!refused.empty()) return false;
  }
  const std::string path = file_dialogs::SaveMethod(op_, state_);
  if (path.empty()) return false;
  if (!WriteMethodFile(state_, path)) {
    op_.message("The method file " + path + " could not be written.", "ZORVEL ERROR",
                BoxIcon::Exclamation);
    return false;
  }
  state_.DataSet.MethodFilePath = path;
  view().showMethodFile(path);  // as it is spelt on disk
  return true;
}

bool MethodEditor::MethodChanged() {
  const MethodSettings& now = state_.Method;
  const MethodSettings& was = editor_.LoadedSettings;
  bool changed = now.NoColors != was.NoColors || now.Fixed != was.Fixed || now.Synch != was.Synch ||
                 now.Spillover != was.Spillover || now.ScanSpeed != was.ScanSpeed ||
                 now.ReadTime != was.ReadTime || now.ReadTimePures != was.ReadTimePures ||
                 now.PMTVoltage != was.PMTVoltage || now.FilterSetting != was.FilterSetting ||
                 now.SynchScan != was.SynchScan || now.DeliveryMethod != was.DeliveryMethod ||
                 now.PrintResults != was.PrintResults || now.AmtSolvent != was.AmtSolvent ||
                 now.Operator != was.Operator || now.StudyId != was.StudyId ||
                 now.Repetitions != was.Repetitions;
  // The pairs the loaded method had; their colours are not compared.
  for (int row = 1; row <= std::clamp<int>(was.NoColors, 0, kMaxColours); ++row) {
    const ColourDeclaration& a = now.FixedPairs.colour(row);
    const ColourDeclaration& b = was.FixedPairs.colour(row);
    changed =
        changed || a.ExWl != b.ExWl || a.EmWl != b.EmWl || a.ExSl != b.ExSl || a.EmSl != b.EmSl;
  }
  editor_.MethodChangedFlag = changed;
  return changed;
}

bool MethodEditor::saveMethodStep() {
  if (editor_.NewDataSet || MethodChanged()) return ValidateAndSaveMethod();
  return true;
}

}  // namespace zorvel

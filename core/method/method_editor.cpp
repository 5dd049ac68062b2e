#include "core/method/method_editor.h"

#include <cctype>

#include "core/method/method_codes.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

using C = MethodControl;

// The window's two-way option groups number their options 1 and 2; the second of the Delivery
// group is the autosampler, of the FileType group Macintosh.
constexpr int kSecondOption = 2;

// What a numeric box does with text that is no number, and with no text at all.
enum class EmptyText { KeepValue, Sentinel, SentinelWithWarning };

struct NumericBox {
  C box;
  bool integer;
  float sentinel;  // stored for bad text (and for empty text unless kept)
  const char* badTextMessage;
  EmptyText empty;
};

constexpr NumericBox kNumericBoxes[] = {
    {C::AmtSolv_Box, false, -1, kMessageNumeric, EmptyText::KeepValue},
    {C::swell_box, true, -1, kMessagePositiveInteger, EmptyText::Sentinel},
    {C::NumReps_Box, true, -1, kMessagePositiveInteger, EmptyText::Sentinel},
    {C::nColors_Box, true, -1, kMessageNumeric, EmptyText::Sentinel},
    {C::RdTime_Box, false, 0, kMessageNumeric, EmptyText::Sentinel},
    {C::RdTimePures_Box, false, 0, kMessageNumeric, EmptyText::Sentinel},
    {C::ScnSpd_Box, false, 0, kMessageNumeric, EmptyText::Sentinel},
    {C::PMTVoltage, false, -1, kMessageNumeric, EmptyText::Sentinel},
    {C::ExSlSync_Box, false, 0, kMessageNumeric, EmptyText::Sentinel},
    {C::EmSlSync_Box, false, 0, kMessageNumeric, EmptyText::Sentinel},
    {C::ScanLL_Box, false, -1, kMessageNumeric, EmptyText::SentinelWithWarning},
    {C::ScanUL_Box, false, -1, kMessageNumeric, EmptyText::Sentinel},
    {C::ScanOff_Box, false, -1, kMessageNumeric, EmptyText::Sentinel},
    {C::ScanDInt_Box, false, -1, kMessageNumeric, EmptyText::Sentinel},
};

const NumericBox* numericBox(C box) {
  for (const NumericBox& entry : kNumericBoxes) {
    if (entry.box == box) return &entry;
  }
  return nullptr;
}

std::int16_t asInt16(double value) {
  return static_cast<std::int16_t>(value);
}

}  // namespace

MethodEditor::MethodEditor(AppState& state, Operator& op)
    : state_(state), op_(op), colours_(state, op) {
  colours_.setConfirmedListener([this] { coloursConfirmed(); });
}

void MethodEditor::warn(const std::string& message, MethodControl box) {
  op_.message(message, "ZORVEL ERROR", BoxIcon::Exclamation);
  view().selectText(box);
}

bool MethodEditor::textCommitted(MethodControl box, const std::string& text) {
  if (filling_) return true;
  if (box == C::Op_Box) {
    state_.Method.Operator = text;
  } else if (box == C::sampid_box) {
    state_.Method.StudyId = text;
  } else {
    return numberChanged(box, text);
  }
  return true;
}

// A refused entry (a warning) leaves the record as it was: the box shows the value in force
// again, so what is shown is always what a run or a save would use.
bool MethodEditor::numberChanged(MethodControl box, const std::string& text) {
  const NumericBox* rule = numericBox(box);
  if (rule == nullptr) return true;
  if (text.empty()) {
    if (rule->empty == EmptyText::SentinelWithWarning) {
      warn(kMessageNumeric, box);
      return false;
    }
    if (rule->empty == EmptyText::Sentinel) store(box, rule->sentinel);
    return true;
  }
  std::optional<double> value = text::parseNumber(text);
  if (value && rule->integer) {
    const std::optional<std::int16_t> whole = text::toInt16(*value);
    value = whole ? std::optional<double>(*whole) : std::nullopt;
  }
  if (!value) {
    if (box == C::ScnSpd_Box) op_.beep();
    warn(rule->badTextMessage, box);
    return false;
  }
  if (box == C::nColors_Box && (*value < 1 || *value > kMaxColours)) {
    warn("Number of colors must be between 1 and 30.", box);
    return false;
  }
  if (box == C::PMTVoltage && (*value < 0 || *value > 900)) {
    warn("PMT voltage must be between 0 and 900.", box);
    return false;
  }
  store(box, *value);
  if (box == C::nColors_Box) state_.Method.NoPures = state_.Method.NoColors;
  return true;
}

void MethodEditor::store(MethodControl box, double value) {
  MethodSettings& m = state_.Method;
  const auto single = static_cast<float>(value);
  switch (box) {
    case C::AmtSolv_Box:
      m.AmtSolvent = single;
      break;
    case C::swell_box:
      editor_.FirstSampleNumber = static_cast<int>(value);
      break;
    case C::NumReps_Box:
      m.Repetitions = asInt16(value);
      break;
    case C::nColors_Box:
      m.NoColors = asInt16(value);
      break;
    case C::RdTime_Box:
      m.ReadTime = single;
      break;
    case C::RdTimePures_Box:
      m.ReadTimePures = single;
      break;
    case C::ScnSpd_Box:
      m.ScanSpeed = single;
      break;
    case C::PMTVoltage:
      m.PMTVoltage = single;
      break;
    case C::ExSlSync_Box:
      m.SynchScan.ExSl = single;
      break;
    case C::EmSlSync_Box:
      m.SynchScan.EmSl = single;
      break;
    case C::ScanLL_Box:
      m.SynchScan.LowerLimit = single;
      break;
    case C::ScanUL_Box:
      m.SynchScan.UpperLimit = single;
      break;
    case C::ScanOff_Box:
      m.SynchScan.MonochromatorOffset = single;
      break;
    case C::ScanDInt_Box:
      m.SynchScan.ScanDataInterval = single;
      break;
    default:
      break;
  }
}

void MethodEditor::optionClicked(MethodControl group, int index) {
  if (filling_) return;
  MethodSettings& m = state_.Method;
  switch (group) {
    case C::ScanType:
      m.Fixed = index != 2;
      m.Synch = index != 1;
      showScanType();
      break;
    case C::Filter_grp:
      m.FilterSetting = static_cast<EmissionFilter>(index);  // the options are wheel positions
      break;
    case C::Voltage_grp:
      view().setControlVisible(C::PMTVoltage, index != 1);
      if (index == 1) {
        m.PMTVoltage = -1;
      } else {
        numberChanged(C::PMTVoltage, view().text(C::PMTVoltage));
      }
      break;
    case C::Delivery:
      m.DeliveryMethod = index == kSecondOption ? Delivery::Autosampler : Delivery::Cuvette;
      view().setControlVisible(C::ASSetup, m.DeliveryMethod == Delivery::Autosampler);
      view().setControlVisible(C::TrayFile, m.DeliveryMethod == Delivery::Autosampler);
      break;
    case C::FileType:
      m.FileType = index == kSecondOption ? DataFileType::Macintosh : DataFileType::DosWindows;
      state_.LineEnding = LineEndingFor(m.FileType);
      break;
    default:
      break;
  }
}

void MethodEditor::checkChanged(MethodControl box, bool checked) {
  if (filling_) return;
  if (box == C::Spillover_Box) state_.Method.Spillover = checked;
  if (box == C::UsePrn_Box) state_.Method.PrintResults = checked;
}

void MethodEditor::focused(MethodControl box) {
  view().selectText(box);
}

void MethodEditor::showScanType() {
  view().setControlVisible(C::Synch_Box, state_.Method.Synch);
  view().setControlVisible(C::Colors_Button, state_.Method.Fixed);
}

void MethodEditor::setFirstSampleNumber(int number) {
  editor_.FirstSampleNumber = number;
  view().showText(C::swell_box, textOf(C::swell_box));
}

std::string MethodEditor::textOf(MethodControl box) const {
  const MethodSettings& m = state_.Method;
  const auto single = [](float v) { return text::plainSingle(v); };
  switch (box) {
    case C::Op_Box:
      return m.Operator;
    case C::sampid_box:
      return m.StudyId;
    case C::AmtSolv_Box:
      return single(m.AmtSolvent);
    case C::swell_box:
      return editor_.FirstSampleNumber < 0 ? std::string()
                                           : std::to_string(editor_.FirstSampleNumber);
    case C::NumReps_Box:
      return std::to_string(m.Repetitions);
    case C::nColors_Box:
      return std::to_string(m.NoColors);
    case C::RdTime_Box:
      return single(m.ReadTime);
    case C::RdTimePures_Box:
      return single(m.ReadTimePures);
    case C::ScnSpd_Box:
      return single(m.ScanSpeed);
    case C::PMTVoltage:
      return m.PMTVoltage < 0 ? std::string() : single(m.PMTVoltage);
    case C::ExSlSync_Box:
      return single(m.SynchScan.ExSl);
    case C::EmSlSync_Box:
      return single(m.SynchScan.EmSl);
    case C::ScanLL_Box:
      return single(m.SynchScan.LowerLimit);
    case C::ScanUL_Box:
      return single(m.SynchScan.UpperLimit);
    case C::ScanOff_Box:
      return single(m.SynchScan.MonochromatorOffset);
    case C::ScanDInt_Box:
      return single(m.SynchScan.ScanDataInterval);
    default:
      return {};
  }
}

void MethodEditor::showNumbers() {
  for (C box :
       {C::Op_Box, C::sampid_box, C::AmtSolv_Box, C::swell_box, C::NumReps_Box, C::nColors_Box,
        C::RdTime_Box, C::RdTimePures_Box, C::ScnSpd_Box, C::PMTVoltage, C::ExSlSync_Box,
        C::EmSlSync_Box, C::ScanLL_Box, C::ScanUL_Box, C::ScanOff_Box, C::ScanDInt_Box})
    view().showText(box, textOf(box));
}

void MethodEditor::showOptions() {
  const MethodSettings& m = state_.Method;
  MethodEditorView& v = view();
  v.showOption(C::ScanType, m.Fixed && m.Synch ? 3 : (m.Synch ? 2 : 1));
  showScanType();
  v.showOption(C::Filter_grp, WheelPosition(m.FilterSetting));
  const bool defaultVoltage = m.PMTVoltage < 0;
  v.showOption(C::Voltage_grp, defaultVoltage ? 1 : 2);
  v.setControlVisible(C::PMTVoltage, !defaultVoltage);
  const bool autosampler = m.DeliveryMethod == Delivery::Autosampler;
  v.showOption(C::Delivery, autosampler ? kSecondOption : 1);
  v.setControlVisible(C::ASSetup, autosampler);
  v.setControlVisible(C::TrayFile, autosampler);
  v.showOption(C::FileType, m.FileType == DataFileType::Macintosh ? kSecondOption : 1);
  v.showOption(C::Spillover_Box, m.Spillover ? 1 : 0);
  v.showOption(C::UsePrn_Box, m.PrintResults ? 1 : 0);
}

void MethodEditor::showMethod() {
  filling_ = true;
  showNumbers();
  showOptions();
  filling_ = false;
  state_.LineEnding = LineEndingFor(state_.Method.FileType);
  view().setQXPanelVisible(editor_.QXPanelShown);
}

void MethodEditor::ControlsVisible(bool enabled) {
  for (C control :
       {C::STFrame, C::Synch_Box, C::PMTFrame, C::EFFrame, C::OFFrame, C::DMFrame, C::Spillover_Box,
        C::UsePrn_Box, C::Colors_Button, C::nColors_Box, C::ScnSpd_Box, C::RdTime_Box,
        C::RdTimePures_Box, C::AmtSolv_Box, C::Op_Box, C::sampid_box, C::swell_box, C::PMTVoltage})
    view().setControlEnabled(control, enabled);
  // Never offered while the autosampler window does not exist in this build.
  view().setControlEnabled(C::ASSetup, enabled && openAutosampler_ != nullptr);
}

void MethodEditor::toggleQXPanel() {
  editor_.QXPanelShown = !editor_.QXPanelShown;
  view().setQXPanelVisible(editor_.QXPanelShown);
}

bool MethodEditor::keyTyped(const std::string& text, MethodControl focus) {
  if (focus != C::OKButton || text.size() != 1) return false;
  if (std::toupper(static_cast<unsigned char>(text[0])) != '~') return false;
  toggleQXPanel();
  return true;
}

bool MethodEditor::keyPressed(EditorKey key, KeyModifiers modifiers, MethodControl focus) {
  const bool window = key == EditorKey::F4 && modifiers.ctrl && modifiers.alt;
  const bool onSave =
      key == EditorKey::F12 && modifiers.ctrl && modifiers.shift && focus == C::Save;
  if (!window && !onSave) return false;
  toggleQXPanel();
  return true;
}

}  // namespace zorvel

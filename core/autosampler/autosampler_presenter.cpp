#include "core/autosampler/autosampler_presenter.h"

#include <algorithm>

#include "core/autosampler/autosampler_check.h"
#include "core/autosampler/field_rules.h"
#include "core/autosampler/tray_geometry_file.h"
#include "core/files/paths.h"
#include "core/instruments/arm_protocol.h"
#include "core/text/number_format.h"

namespace zorvel {

namespace {

// The Resolution and SampleDisposition groups number their options 1 and 2; the second is
// "Fine" and "Save".
constexpr int kSecondOption = 2;

std::string whole(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

bool isVolume(AutosamplerField field) {
  return field == AutosamplerField::SampleVolume || field == AutosamplerField::BackFlow ||
         field == AutosamplerField::AirVolume;
}

bool shapesTheTray(AutosamplerField field) {
  return field == AutosamplerField::StartingTube || field == AutosamplerField::EndingTube ||
         field == AutosamplerField::StandardTube || field == AutosamplerField::BlankTube;
}

// A height choice: the probe height it selects and the position the arm goes to.
struct HeightChoice {
  std::int16_t height;
  std::int16_t position;
};

HeightChoice heightChoice(const AutosamplerSettings& s, int index, std::int16_t targetTube) {
  switch (index) {
    case 1:
    case 4:
      return {s.RinseHeight, 0};
    case 2:
    case 5:
      return {s.StandardHeight, s.StandardTube};
    case 7:
      return {s.TubeHeight, s.EndingTube};
    case 8:
      return {s.TubeHeight, targetTube};
    case 9:
      return {s.BackFillHeight, s.StartingTube};
    case 10:
      return {s.StandardBFHeight, s.StandardTube};
    default:  // 3 "Samples", 6 "Start Tube"
      return {s.TubeHeight, s.StartingTube};
  }
}

}  // namespace

AutosamplerPresenter::AutosamplerPresenter(MaintenanceRig rig, std::string methodsDirectory,
                                           AutosamplerView& view, AutosamplerHooks hooks)
    : rig_(rig),
      methodsDirectory_(std::move(methodsDirectory)),
      view_(view),
      hooks_(std::move(hooks)),
      sequences_(
          rig,
          SequenceHooks{[this](const std::string& step) { view_.showSequenceStep(step); },
                        [this] { showArm(); },
                        [this](AutosamplerField f) {
                          showField(f);
                          view_.selectFieldText(f);
                        },
                        [this](int done, int total) { view_.showSequenceProgress(done, total); }}) {
}

SequenceEnd AutosamplerPresenter::ended(const std::string& name, SequenceEnd end) {
  switch (end) {
    case SequenceEnd::Done:
      view_.showSequenceStep(name + ": done");
      break;
    case SequenceEnd::SettingsRefused:
      view_.showSequenceStep(name + ": the settings were refused; nothing moved");
      break;
    case SequenceEnd::LinkFailed:
      view_.showSequenceStep(name + " stopped: the arm or the dilutor failed");
      break;
    case SequenceEnd::Stopped:
      view_.showSequenceStep(name + ": " + sequences_.stoppedState());
      break;
  }
  return end;
}

void AutosamplerPresenter::showField(AutosamplerField field) {
  view_.setFieldText(field, whole(FieldValue(rig_.settings, field)));
  if (shapesTheTray(field)) view_.trayChanged();
}

void AutosamplerPresenter::showArm() {
  view_.showArmPosition(rig_.links.Placement.ArmX, rig_.links.Placement.ArmY);
}

void AutosamplerPresenter::showSelectedHeight() {
  view_.setHeightText(whole(selectedHeight_));
}

void AutosamplerPresenter::error(const std::string& text) {
  rig_.person.message(text, kZorvelErrorTitle, BoxIcon::Exclamation);
}

void AutosamplerPresenter::showStandardAndBlank() {
  const AutosamplerSettings& s = rig_.settings;
  view_.setChecked(AutosamplerCheckBox::Standard, s.HasStandard);
  view_.setChecked(AutosamplerCheckBox::Blank, s.HasBlank);
  view_.setStandardBoxesVisible(s.HasStandard);
  view_.setBlankBoxesVisible(s.HasBlank);
  view_.setFreqCaptionVisible(s.HasStandard || s.HasBlank);
  view_.trayChanged();
}

void AutosamplerPresenter::opened() {
  const AutosamplerSettings& s = rig_.settings;
  for (int k = 0; k < kAutosamplerFieldCount; ++k) showField(static_cast<AutosamplerField>(k));
  view_.setOption(AutosamplerGroup::SyringeVolume, s.SyringeVolume);
  view_.setOption(AutosamplerGroup::Resolution,
                  s.Resolution == PumpResolution::Fine ? kSecondOption : 1);
  view_.setOption(AutosamplerGroup::PumpDirection, s.PumpDirection);
  view_.setOption(AutosamplerGroup::SampleDisposition,
                  s.SampleDisposition == Disposition::Save ? kSecondOption : 1);
  showStandardAndBlank();
  stepIncrementMm_ = 10;
  view_.setOption(AutosamplerGroup::Increment, 10);
  mode_ = kPositionCalibrate;
  showSelectedHeight();
  view_.setSavePositionEnabled(!positionSaved_);
  showArm();
}

void AutosamplerPresenter::moveToStartingTube() {
  sequences_.moveTo(rig_.settings.StartingTube);
  rig_.links.CurrentArmHeight = 0;
}

void AutosamplerPresenter::leave() {
  sequences_.moveTo(0);
}

bool AutosamplerPresenter::fieldEdited(AutosamplerField field, std::string_view text) {
  AutosamplerSettings& s = rig_.settings;
  const std::int16_t inForce = FieldValue(s, field);
  const FieldEditResult result = ApplyFieldText(s, field, text, rig_.tray.TubeCount);
  if (result.beep) rig_.person.beep();
  const bool refused = !result.message.empty();
  if (refused) {
    error(result.message);
    // The box goes back to the value in force, not to a reset value the operator never typed.
    FieldValue(s, field) = inForce;
    return false;
  }
  if (isVolume(field)) rig_.steps = ComputePumpSteps(s, rig_.links.StepsPerMicrolitre);
  if (field == AutosamplerField::StartingTube && hooks_.startingTubeCopied) {
    hooks_.startingTubeCopied(s.StartingTube);
  }
  if (shapesTheTray(field)) view_.trayChanged();
  return true;
}

std::string AutosamplerPresenter::fieldText(AutosamplerField field) const {
  return whole(FieldValue(rig_.settings, field));
}

void AutosamplerPresenter::optionChosen(AutosamplerGroup group, int index) {
  AutosamplerSettings& s = rig_.settings;
  const auto value = static_cast<std::int16_t>(index);
  switch (group) {
    case AutosamplerGroup::SyringeVolume:
      s.SyringeVolume = value;
      rig_.links.StepsPerMicrolitre = StepsPerMicrolitreFor(s);
      rig_.steps = ComputePumpSteps(s, rig_.links.StepsPerMicrolitre);
      break;
    case AutosamplerGroup::Resolution:
      s.Resolution = index == kSecondOption ? PumpResolution::Fine : PumpResolution::Standard;
      break;
    case AutosamplerGroup::PumpDirection:
      s.PumpDirection = value;
      break;
    case AutosamplerGroup::SampleDisposition:
      s.SampleDisposition = index == kSecondOption ? Disposition::Save : Disposition::ThrowAway;
      break;
    case AutosamplerGroup::Increment:
      stepIncrementMm_ = static_cast<float>(index);
      break;
    case AutosamplerGroup::Height:
      heightChosen(index);
      break;
  }
}

void AutosamplerPresenter::checkBoxChanged(AutosamplerCheckBox box, bool checked) {
  (box == AutosamplerCheckBox::Standard ? rig_.settings.HasStandard : rig_.settings.HasBlank) =
      checked;
  showStandardAndBlank();
}

void AutosamplerPresenter::openTrayGeometryFile() {
  FileDialogRequest request;
  request.initialDirectory = methodsDirectory_;
  request.defaultExtension = "TGF";
  request.filter = "Selected Files (*.TGF)|*.TGF|All files (*.*)|*.*";
  request.action = FileDialogAction::Open;
  const std::string path = rig_.person.fileDialog(request);
  if (path.empty()) return;
  if (!FileExists(path)) {
    rig_.person.message("File does not exist", kZorvelErrorTitle);
    return;
  }
  // A refused file leaves the tray the window had.
  TrayGeometry loaded;
  const TrayLoadResult result = LoadTrayGeometry(path, loaded);
  if (!result) {
    error(result.message);
    return;
  }
  rig_.tray = loaded;
  if (hooks_.trayFileShown) hooks_.trayFileShown(path);  // as it is spelt on disk
  view_.trayChanged();
}

bool AutosamplerPresenter::done() {
  return ValidateAutosamplerSettings(rig_.settings, rig_.tray.TubeCount,
                                     rig_.links.StepsPerMicrolitre, rig_.steps, rig_.person,
                                     [this](AutosamplerField f) {
                                       showField(f);
                                       view_.selectFieldText(f);
                                     });
}

void AutosamplerPresenter::manualMove(float xMm, float yMm) {
  ArmPlacement& at = rig_.links.Placement;
  at.ArmX = xMm;
  at.ArmY = yMm;
  showArm();
  positionSaved_ = false;
  view_.setSavePositionEnabled(true);
  rig_.arm.SendArmCommand(ArmMoveCommand(xMm, yMm));
  rig_.links.CurrentArmHeight = 0;
  // The arm now stands over no tube: the next move to any tube, the last one included, is sent.
  rig_.links.CurrentArmTube = -1;
}

void AutosamplerPresenter::arrow(ArmArrow which) {
  const ArmPlacement& at = rig_.links.Placement;
  const bool vertical = which == ArmArrow::Up || which == ArmArrow::Down;
  const float sign = which == ArmArrow::Up || which == ArmArrow::Left ? -1.0f : 1.0f;
  const float moved = (vertical ? at.ArmY : at.ArmX) + sign * stepIncrementMm_;
  const float limit = vertical ? kArmMaxYMm : kArmMaxXMm;
  if (moved < 0 || moved > limit) {
    // The up arrow at the top edge says nothing; every other arrow beeps.
    if (which != ArmArrow::Up) rig_.person.beep();
    return;
  }
  if (vertical) {
    manualMove(at.ArmX, moved);
  } else {
    manualMove(moved, at.ArmY);
  }
}

std::optional<float> AutosamplerPresenter::positionChecked(ArmAxis axis, std::string_view typed) {
  const auto number = text::parseNumber(typed);
  if (!number) {
    rig_.person.beep();
    error("Non-numeric entry.  Please try again.");
    return std::nullopt;
  }
  const auto value = static_cast<float>(*number);
  const float limit = axis == ArmAxis::X ? kArmMaxXMm : kArmMaxYMm;
  if (value < 0 || value > limit) {
    // Out of the arm's reach: refused without a command.
    rig_.person.beep();
    error("Answer must be between 0 and " + whole(static_cast<int>(limit)) + ".");
    return std::nullopt;
  }
  return value;
}

void AutosamplerPresenter::moveAlong(ArmAxis axis, float mm) {
  const ArmPlacement& at = rig_.links.Placement;
  if (axis == ArmAxis::X) {
    manualMove(mm, at.ArmY);
  } else {
    manualMove(at.ArmX, mm);
  }
}

bool AutosamplerPresenter::positionTyped(ArmAxis axis, std::string_view typed) {
  const std::optional<float> mm = positionChecked(axis, typed);
  if (mm) moveAlong(axis, *mm);
  return mm.has_value();
}

void AutosamplerPresenter::heightChosen(int index) {
  const AutosamplerSettings& s = rig_.settings;
  const HeightChoice choice = heightChoice(s, index, targetTube_);
  selectedHeight_ = choice.height;
  showSelectedHeight();
  // "Samples", "Start Tube" and "Sample Air Fill" go to the calibration tube.
  mode_ = index == 3 || index == 6 || index == 9 ? kPositionCalibrate : kPositionKeep;
  sequences_.moveTo(choice.position);
}

bool AutosamplerPresenter::heightTyped(std::string_view typed) {
  const auto number = text::parseNumber(typed);
  if (!number) {
    error("Answer must be numeric.");
    return false;
  }
  const double v = text::roundHalfEven(*number);
  if (v < 0 || v > kMaxProbeHeight) {
    error("Range is 0 - 146.  Please try again.");
    return false;
  }
  selectedHeight_ = static_cast<std::int16_t>(v);
  return true;
}

void AutosamplerPresenter::lowerProbe() {
  sequences_.lower(selectedHeight_, "chosen");
}

bool AutosamplerPresenter::tubeTyped(std::string_view typed) {
  const auto number = text::parseNumber(typed);
  if (!number) {
    rig_.person.beep();
    error("Non-numeric entry.  Please try again.");
    return false;
  }
  const double v = text::roundHalfEven(*number);
  if (v < 0 || v > rig_.tray.TubeCount) {
    rig_.person.beep();
    error("Answer must be between 0 and " + whole(rig_.tray.TubeCount) + ".");
    return false;
  }
  targetTube_ = static_cast<std::int16_t>(v);
  return true;
}

void AutosamplerPresenter::one() {
  ArmPlacement& at = rig_.links.Placement;
  at.ArmOffsetX = 0;
  at.ArmOffsetY = 0;
  selectedHeight_ = rig_.settings.BackFillHeight;
  showSelectedHeight();
  if (sequences_.moveTo(targetTube_) != LinkFailure::None) return;
  sequences_.lower(selectedHeight_, "backfill");
}

void AutosamplerPresenter::locate() {
  ArmPlacement& at = rig_.links.Placement;
  at.ArmOffsetX = 0;
  at.ArmOffsetY = 0;
  const AutosamplerSettings& s = rig_.settings;
  selectedHeight_ = s.BackFillHeight;
  showSelectedHeight();
  ended("Locate", sequences_.LocateTubes(s.StartingTube, s.EndingTube, selectedHeight_));
}

void AutosamplerPresenter::savePosition() {
  if (mode_ == kPositionCalibrate) {
    ArmPlacement& at = rig_.links.Placement;
    const TrayPosition& tube = rig_.tray.positions[static_cast<std::size_t>(
        std::clamp<int>(rig_.settings.StartingTube, 0, kMaxTrayPosition))];
    at.ArmOffsetX = at.ArmX - tube.X + 4;
    at.ArmOffsetY = at.ArmY - tube.Y;
    view_.setSavePositionEnabled(false);
  } else if (mode_ == kPositionKeep) {
    positionSaved_ = false;
    view_.setSavePositionEnabled(false);
  } else {
    rig_.person.beep();
  }
}

bool AutosamplerPresenter::beginSequence() {
  if (running_) return false;
  running_ = true;
  view_.setSequenceRunning(true);
  return true;
}

void AutosamplerPresenter::endSequence() {
  running_ = false;
  view_.setSequenceRunning(false);
}

}  // namespace zorvel

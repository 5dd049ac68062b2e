#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/autosampler/autosampler_view.h"
#include "core/autosampler/maintenance_sequences.h"

namespace zorvel {

// The arrows of the positioning frame.
enum class ArmArrow { Up, Down, Left, Right };
enum class ArmAxis { X, Y };

// What the window is told by the program around it.
struct AutosamplerHooks {
  // A new starting tube is also the main window's first sample number.
  std::function<void(int)> startingTubeCopied;
  // A tray geometry file was loaded: the main window's "Autosampler Geometry File:" label.
  std::function<void(const std::string&)> trayFileShown;
};

// The rules of the autosampler window ASDILUTOR: the dilutor and tray settings with their
// per-box rules, the tray geometry file, the arm's manual positioning and calibration, and the
// pump sequences. Calls that move the arm or stroke the pump block until the instruments are
// done, so the window runs them on its instrument worker between beginSequence and
// endSequence; the others answer at once.
class AutosamplerPresenter {
 public:
  // The arrow limits of the arm, mm, and of a typed probe height.
  static constexpr float kArmMaxXMm = 302.0f;
  static constexpr float kArmMaxYMm = 181.0f;
  static constexpr int kMaxProbeHeight = 146;
  // Positioning modes. After a move to the calibration tube (the starting tube, where the window
  // also opens) "Save Position" calibrates the tray; after any other height choice it only
  // marks the position as kept.
  static constexpr int kPositionKeep = 1;
  static constexpr int kPositionCalibrate = 3;

  AutosamplerPresenter(MaintenanceRig rig, std::string methodsDirectory, AutosamplerView& view,
                       AutosamplerHooks hooks = {});

  // Activation: every box from the record, the option groups and check boxes, a 10 mm step.
  void opened();
  // The arm part of activation: over the starting tube with the probe raised.
  void moveToStartingTube();
  // Deactivation: the arm back over the rinse station.
  void leave();

  // A box's entry, taken when the operator commits it. False when it is refused: the setting
  // keeps the value in force and the operator has been told why.
  bool fieldEdited(AutosamplerField field, std::string_view text);
  // The text of the setting in force, what a box shows again after a refusal.
  std::string fieldText(AutosamplerField field) const;
  void optionChosen(AutosamplerGroup group, int index);
  void checkBoxChanged(AutosamplerCheckBox box, bool checked);
  // "&Open Tray Geometry FIle".
  void openTrayGeometryFile();
  // "Done": the whole check; true when the window may close (after leave()).
  bool done();

  // Positioning (arm work, on the worker).
  void arrow(ArmArrow which);
  // A typed X or Y: checked, then the arm moves there. False when refused (nothing moves).
  bool positionTyped(ArmAxis axis, std::string_view text);
  // The two halves of positionTyped: the check on the window thread, the move on the worker.
  std::optional<float> positionChecked(ArmAxis axis, std::string_view text);
  void moveAlong(ArmAxis axis, float mm);
  void heightChosen(int index);
  void lowerProbe();
  void one();
  void locate();
  // Positioning without arm work; false when the entry is refused and the value in force kept.
  bool heightTyped(std::string_view text);
  bool tubeTyped(std::string_view text);
  void savePosition();

  // The pump sequences (on the worker); each ends by saying how it ended.
  SequenceEnd primePump() { return ended("Prime Pump", sequences_.PrimePump()); }
  SequenceEnd checkRinse() { return ended("Check Rinse", sequences_.CheckRinse()); }
  SequenceEnd checkVolumes() { return ended("Check Volumes", sequences_.CheckVolumes()); }
  SequenceEnd testing() { return ended("Testing", sequences_.Testing()); }
  // "Stop" (any thread): the running sequence or Locate ends at its next step.
  void stopSequence() { sequences_.requestStop(); }

  // False while a sequence runs; otherwise the window's controls stop answering until
  // endSequence.
  bool beginSequence();
  void endSequence();
  bool sequenceRunning() const { return running_; }

  float stepIncrement() const { return stepIncrementMm_; }
  std::int16_t selectedHeight() const { return selectedHeight_; }
  std::int16_t targetTube() const { return targetTube_; }
  bool positionSaved() const { return positionSaved_; }
  int positioningMode() const { return mode_; }
  const TrayGeometry& tray() const { return rig_.tray; }
  const AutosamplerSettings& settings() const { return rig_.settings; }
  const ArmPlacement& placement() const { return rig_.links.Placement; }

 private:
  void showField(AutosamplerField field);
  void showSelectedHeight();
  void showArm();
  void error(const std::string& text);
  void manualMove(float xMm, float yMm);
  void showStandardAndBlank();
  SequenceEnd ended(const std::string& name, SequenceEnd end);

  MaintenanceRig rig_;
  std::string methodsDirectory_;
  AutosamplerView& view_;
  AutosamplerHooks hooks_;
  MaintenanceSequences sequences_;
  float stepIncrementMm_ = 10;
  std::int16_t selectedHeight_ = 0;
  std::int16_t targetTube_ = 0;
  bool positionSaved_ = true;
  int mode_ = kPositionCalibrate;
  bool running_ = false;
};

}  // namespace zorvel

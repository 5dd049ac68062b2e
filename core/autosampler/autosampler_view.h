#pragma once

#include <string>

#include "core/autosampler/autosampler_field.h"

namespace zorvel {

// The option groups of the autosampler window; each shows the index of its chosen option.
enum class AutosamplerGroup {
  SyringeVolume,      // Syringe_volume_grp: 10 "10 ml", 5 "  5 ml"
  Resolution,         // Resolution_Grp: 1 "Standard", 2 "Fine"
  PumpDirection,      // PumpDir: 1 "Clockwise", 2 "CounterClockwise"
  SampleDisposition,  // SampleDisposition: 1 "Throw Away", 2 "Save"
  Increment,          // Incr_grp: 10 "10 mm", 1 "  1 mm"
  Height,             // Height_grp: 1 to 10, 0 when none is chosen
};

enum class AutosamplerCheckBox { Standard, Blank };

// What the autosampler window (ASDILUTOR) shows. The arm calls may come from the instrument
// worker while a sequence runs; the Qt window hands every call to the window thread.
class AutosamplerView {
 public:
  virtual ~AutosamplerView() = default;

  virtual void setFieldText(AutosamplerField field, const std::string& text) = 0;
  virtual void selectFieldText(AutosamplerField field) = 0;
  virtual void setOption(AutosamplerGroup group, int index) = 0;
  virtual void setChecked(AutosamplerCheckBox box, bool checked) = 0;
  // StandardTube and StandardFreq; BlankTube and BlankFreq; the "Freq." caption.
  virtual void setStandardBoxesVisible(bool visible) = 0;
  virtual void setBlankBoxesVisible(bool visible) = 0;
  virtual void setFreqCaptionVisible(bool visible) = 0;
  // XPos and YPos, and the arm's mark on the tray picture.
  virtual void showArmPosition(float xMm, float yMm) = 0;
  virtual void setHeightText(const std::string& text) = 0;  // THeight
  virtual void setSavePositionEnabled(bool enabled) = 0;    // SavePos
  // While an arm or pump sequence runs, nothing that starts another or edits the settings
  // answers; the window still repaints.
  virtual void setSequenceRunning(bool running) = 0;
  // The status line of a running sequence: the step under way, and at the end how it ended and
  // in what state it left the instruments.
  virtual void showSequenceStep(const std::string& text) = 0;
  // Steps done of the sequence's steps.
  virtual void showSequenceProgress(int done, int total) = 0;
  // The tray, the sample range or the standard and blank tubes changed: redraw the picture.
  virtual void trayChanged() = 0;
  // "Done": the window goes away and the main window shows again.
  virtual void close() = 0;
};

}  // namespace zorvel

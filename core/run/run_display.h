#pragma once

#include <string>
#include <vector>

#include "core/run/run_types.h"
#include "core/run/run_view.h"
#include "core/state/data_set_paths.h"
#include "core/state/method_settings.h"

namespace zorvel {

// What the run window shows, as the run last set it: the controls (change screen(), then
// show() it; show() forgets a focus once it is sent), the grid row being filled and the status
// lines.
class RunDisplay {
 public:
  explicit RunDisplay(RunView& view) : view_(view) {}

  // Form_Load: the frames and the colours' heads, the median row, the file caption and the
  // Init button; the grid starts again below its heads.
  void layOut(const MethodSettings& method, const std::vector<std::string>& medians,
              const DataSetPaths& set);

  RunView& view() { return view_; }
  RunScreen& screen() { return screen_; }
  void show();
  void setResetEnabled(bool enabled);
  // No reset and no OK button while the run works.
  void hideButtons();
  // The OK button with the caption, and the focus on it.
  void offerButton(const std::string& caption);
  // The key legend (AbortMsg).
  void legend(const std::string& text);
  // One step of work: the status box holds only its title.
  void status(const std::string& title);

  // The next grid row, in view and labelled with the sample number; returns its index.
  int nextRow(int sampleNumber);
  // Relabels the row being filled ("12P", "Blank", "NS", ...).
  void labelRow(const std::string& label);

 private:
  RunView& view_;
  RunScreen screen_;
  int gridRow_ = 1;
};

}  // namespace zorvel

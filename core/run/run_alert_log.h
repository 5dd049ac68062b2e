#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/platform/clock.h"
#include "core/platform/operator.h"
#include "core/quality/quality_check.h"
#include "core/state/app_state.h"

namespace zorvel {

// The data set's run log (".LOG") during a tray run: what would have stopped the run for a
// person is written here instead, one line each, and the run tells the operator at its end.
// A line is TAB-separated: date, time, "Tube n", the record's label ("C12"), what happened,
// then its details:
//   03-07-2000  14:05:09  Tube 1  C12  Control alert  Blue 493/515: 12.345 outside 9.500 to 10.500
//   (4 SD)  ... 03-07-2000  14:07:40  Tube 7  S3   Instrument error  VALUE OUT OF RANGE
class RunAlertLog final : public UnattendedAlerts {
 public:
  RunAlertLog(const AppState& state, Clock& clock);

  // The tube being read and the label its record will carry.
  void setTube(int tube, const std::string& label);
  // A control kept in spite of its alert, with each colour out of range.
  void alertKept(const std::vector<OutOfRange>& colours) override;
  // An instrument error the run went on after (the command was sent again).
  void instrumentError(const std::string& message);

  // Something has been logged since the run began (AlertsLogged).
  bool logged() const { return logged_; }
  void clear() { logged_ = false; }
  const std::string& path() const { return state_.DataSet.LogFilePath; }
  // Told each line as it is logged (what happened and its details, without the time stamp).
  void setListener(std::function<void(const std::string&)> listener) {
    listener_ = std::move(listener);
  }

 private:
  void append(const std::string& what, const std::vector<std::string>& details);

  const AppState& state_;
  Clock& clock_;
  int tube_ = 0;
  std::string label_;
  bool logged_ = false;
  std::function<void(const std::string&)> listener_;
};

// The run's operator while no one is at the bench: the fluorimeter's error boxes, which only
// tell (the command is sent again whatever the answer), go to the run log instead of waiting
// for OK. Everything else is asked as usual.
class UnattendedOperator final : public Operator {
 public:
  explicit UnattendedOperator(Operator& person) : person_(person) {}

  // Log the error boxes here; null: show them again.
  void divertTo(RunAlertLog* log) { log_ = log; }

  int messageBox(const MessageBoxRequest& box) override;
  std::string inputBox(const std::string& prompt, const std::string& title,
                       const std::string& defaultText) override {
    return person_.inputBox(prompt, title, defaultText);
  }
  std::string fileDialog(const FileDialogRequest& request) override {
    return person_.fileDialog(request);
  }
  void beep() override { person_.beep(); }
  void setBusy(bool busy) override { person_.setBusy(busy); }
  void endProgram(int exitCode) override { person_.endProgram(exitCode); }

 private:
  Operator& person_;
  RunAlertLog* log_ = nullptr;
};

}  // namespace zorvel

#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/method/colour_view.h"
#include "core/method/method_checks.h"
#include "core/platform/operator.h"
#include "core/state/app_state.h"

namespace zorvel {

// What outlives the colour window between its openings.
struct ColourWindowState {
  int PageOffset = 0;  // rows before the shown page: 0 or 15
  bool WavelengthMessages = false;
  FixedPairTable BackupPairs{};  // the table as last confirmed with OK
  FixedPairTable AppendPairs{};  // the table of the data set being appended to
  bool BackupPending = false;    // the next opening takes the current table as its backup
  bool Appending = false;        // a data set is being appended to
  FixedTableExtremes Extremes;   // of the last range check
};

// The rules of the colour window: the fixed-wavelength pairs of the current method, typed 15
// rows at a time, each given its colour, checked for range, confirmed or cancelled.
class ColourPresenter {
 public:
  ColourPresenter(AppState& state, Operator& op) : state_(state), op_(op) {}

  const AppState& state() const { return state_; }
  ColourWindowState& window() { return window_; }
  const ColourWindowState& window() const { return window_; }
  // Told when OK closes the window: the colours are declared.
  void setConfirmedListener(std::function<void()> listener) { confirmed_ = std::move(listener); }

  // Opening: the backup taken or restored, the first page shown; the rows are filled from the
  // table when `filled` (colours declared, or a data set appended to), otherwise left empty.
  void open(ColourView& view, bool filled);
  // After opening for a failed whole-method check: the row's page shown, its box focused.
  void showFault(const WavelengthFault& fault);

  // A text box of the shown page changed.
  // A box's entry, taken when committed; false when it is not a number (the row keeps its
  // value).
  bool boxChanged(int slot, PairField field, const std::string& text);
  void nextPage();
  void previousPage();
  // OK: false while the window stays open.
  bool confirm();
  void cancel();

  // The range check of the whole table; on a fault its page is shown, the value becomes -1,
  // its box is selected, and with messages on the operator is told.
  std::optional<WavelengthFault> CheckWavelengths();
  // Shows the page holding the row and returns its slot there.
  int PageForRow(int row);
  void FillColourPage();
  void AutoColour(int row);

 private:
  ColourDeclaration& pair(int row) { return state_.Method.FixedPairs.colour(row); }
  int rows() const;
  // The slot of a row when its page is the one shown, else 0.
  int shownSlot(int row) const;
  void storeListedColours();
  void detach();

  AppState& state_;
  Operator& op_;
  ColourWindowState window_;
  ColourView* view_ = nullptr;
  bool filling_ = false;
  std::function<void()> confirmed_;
};

}  // namespace zorvel

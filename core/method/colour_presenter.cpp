#include "core/method/colour_presenter.h"

#include <algorithm>

#include "core/text/number_format.h"

namespace zorvel {

namespace {

constexpr PairField kFields[] = {PairField::ExWl, PairField::EmWl, PairField::ExSl,
                                 PairField::EmSl};

float& valueOf(ColourDeclaration& pair, PairField field) {
  switch (field) {
    case PairField::ExWl:
      return pair.ExWl;
    case PairField::EmWl:
      return pair.EmWl;
    case PairField::ExSl:
      return pair.ExSl;
    case PairField::EmSl:
      break;
  }
  return pair.EmSl;
}

}  // namespace

int ColourPresenter::rows() const {
  return std::clamp<int>(state_.Method.NoColors, 0, kMaxColours);
}

int ColourPresenter::shownSlot(int row) const {
  const int slot = row - window_.PageOffset;
  return slot >= 1 && slot <= kColourRowsPerPage ? slot : 0;
}

void ColourPresenter::open(ColourView& view, bool filled) {
  view_ = &view;
  if (window_.BackupPending) {
    window_.BackupPairs = state_.Method.FixedPairs;
    window_.BackupPending = false;
  } else {
    state_.Method.FixedPairs = window_.BackupPairs;
  }
  window_.PageOffset = 0;
  filling_ = true;
  for (int slot = 1; slot <= kColourRowsPerPage; ++slot) {
    ColourDeclaration& row = pair(slot);
    view.setColourChoice(slot, row.ColourIndex);
    const bool shown = slot <= rows();
    view.setRowVisible(slot, shown);
    view.setRowLabel(slot, shown ? std::to_string(slot) : "");
    for (PairField field : kFields) {
      view.setBoxText(slot, field,
                      shown && filled ? text::plainSingle(valueOf(row, field)) : std::string());
    }
  }
  filling_ = false;
  view.setPagingEnabled(false, rows() > kColourRowsPerPage);
  window_.WavelengthMessages = true;
  view.focusBox(1, PairField::ExWl);
  view.selectBox(1, PairField::ExWl);
}

void ColourPresenter::showFault(const WavelengthFault& fault) {
  if (view_ == nullptr) return;
  const int slot = PageForRow(fault.row);
  view_->focusBox(slot, fault.field);
  view_->selectBox(slot, fault.field);
}

bool ColourPresenter::boxChanged(int slot, PairField field, const std::string& typed) {
  if (filling_ || view_ == nullptr) return true;
  const int row = window_.PageOffset + slot;
  if (row < 1 || row > kMaxColours) return true;
  if (typed.empty()) {
    valueOf(pair(row), field) = -1;
    return true;
  }
  const std::optional<double> value = text::parseNumber(typed);
  if (!value) {
    op_.message("Non-numeric entry.  Please try again.", "ZORVEL ERROR", BoxIcon::Exclamation);
    view_->selectBox(slot, field);
    return false;
  }
  valueOf(pair(row), field) = static_cast<float>(*value);
  if (field == PairField::ExWl) AutoColour(row);
  return true;
}

void ColourPresenter::AutoColour(int row) {
  ColourDeclaration& declaration = pair(row);
  if (declaration.ExWl < 200) return;
  const int colour = std::max(0, ColourIndexForExcitation(state_, declaration.ExWl));
  declaration.ColourIndex = static_cast<std::int16_t>(colour);
  if (view_ != nullptr && shownSlot(row) != 0) view_->setColourChoice(shownSlot(row), colour);
}

void ColourPresenter::FillColourPage() {
  if (view_ == nullptr) return;
  const int shown = std::min(kColourRowsPerPage, rows() - window_.PageOffset);
  filling_ = true;
  for (int slot = 1; slot <= kColourRowsPerPage; ++slot) {
    view_->setRowVisible(slot, slot <= shown);
    if (slot > shown) continue;
    ColourDeclaration& row = pair(window_.PageOffset + slot);
    view_->setRowLabel(slot, std::to_string(window_.PageOffset + slot));
    for (PairField field : kFields) {
      const float value = valueOf(row, field);
      view_->setBoxText(slot, field, value > 0 ? text::plainSingle(value) : std::string());
    }
    view_->setColourChoice(slot, row.ColourIndex);
  }
  filling_ = false;
  view_->setPagingEnabled(window_.PageOffset > 0, window_.PageOffset + kColourRowsPerPage < rows());
}

int ColourPresenter::PageForRow(int row) {
  if (rows() < kColourRowsPerPage) return row;
  const int slot = row % kColourRowsPerPage == 0 ? kColourRowsPerPage : row % kColourRowsPerPage;
  window_.PageOffset = row - slot;
  FillColourPage();
  return slot;
}

// The colours chosen in the shown page's lists, for their rows; a list without a choice
// stands for colour 0.
void ColourPresenter::storeListedColours() {
  if (view_ == nullptr) return;
  const int shown = std::min(kColourRowsPerPage, rows() - window_.PageOffset);
  for (int slot = 1; slot <= shown; ++slot) {
    pair(window_.PageOffset + slot).ColourIndex =
        static_cast<std::int16_t>(std::max(0, view_->colourChoice(slot)));
  }
}

void ColourPresenter::nextPage() {
  storeListedColours();
  window_.PageOffset += kColourRowsPerPage;
  FillColourPage();
}

void ColourPresenter::previousPage() {
  storeListedColours();
  window_.PageOffset = std::max(0, window_.PageOffset - kColourRowsPerPage);
  FillColourPage();
}

std::optional<WavelengthFault> ColourPresenter::CheckWavelengths() {
  const std::optional<WavelengthFault> fault = FindWavelengthFault(state_.Method, window_.Extremes);
  if (!fault) return fault;
  const int slot = PageForRow(fault->row);
  valueOf(pair(fault->row), fault->field) = -1;
  if (view_ != nullptr) view_->selectBox(slot, fault->field);
  if (window_.WavelengthMessages) {
    op_.beep();
    op_.message(WavelengthFaultMessage(fault->field), "ZORVEL ERROR", BoxIcon::Exclamation);
  }
  return fault;
}

bool ColourPresenter::confirm() {
  if (view_ == nullptr) return false;
  if (const auto fault = CheckWavelengths()) {
    view_->focusBox(shownSlot(fault->row), fault->field);
    return false;
  }
  storeListedColours();
  const FixedPairTable& table = state_.Method.FixedPairs;
  for (int i = 1; i <= rows(); ++i) {
    for (int j = i + 1; j <= rows(); ++j) {
      if (table.colour(i).ColourIndex != table.colour(j).ColourIndex) continue;
      const int answer =
          op_.message("Two wavelengths are set to be the same color.  Is this correct",
                      "Color Declaration Problem", BoxIcon::Question, BoxButtons::YesNo);
      if (answer == answer::kNo) {
        view_->focusColourList(PageForRow(j));
        return false;
      }
    }
  }
  storeListedColours();
  window_.BackupPairs = state_.Method.FixedPairs;
  window_.WavelengthMessages = false;
  detach();
  if (confirmed_) confirmed_();
  return true;
}

void ColourPresenter::cancel() {
  state_.Method.FixedPairs = window_.Appending ? window_.AppendPairs : window_.BackupPairs;
  window_.WavelengthMessages = false;
  detach();
}

void ColourPresenter::detach() {
  ColourView* view = view_;
  view_ = nullptr;
  if (view != nullptr) view->close();
}

}  // namespace zorvel

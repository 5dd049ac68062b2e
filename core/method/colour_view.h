#pragma once

#include <string>

#include "core/method/method_checks.h"

namespace zorvel {

inline constexpr int kColourRowsPerPage = 15;

// What the colour window (COLORS) shows: 15 rows of a label, four text boxes and a colour list
// (the 14 colour names in index order). Slots are 1..15; the tests record it.
class ColourView {
 public:
  virtual ~ColourView() = default;

  virtual void setRowVisible(int slot, bool visible) = 0;
  virtual void setRowLabel(int slot, const std::string& text) = 0;
  virtual void setBoxText(int slot, PairField field, const std::string& text) = 0;
  // The list's selection: a colour index, or -1 for none.
  virtual void setColourChoice(int slot, int colourIndex) = 0;
  virtual int colourChoice(int slot) const = 0;
  virtual void selectBox(int slot, PairField field) = 0;
  virtual void focusBox(int slot, PairField field) = 0;
  virtual void focusColourList(int slot) = 0;
  // "&Prev 15" and "&Next 15".
  virtual void setPagingEnabled(bool previous, bool next) = 0;
  // Unloads the window.
  virtual void close() = 0;
};

}  // namespace zorvel

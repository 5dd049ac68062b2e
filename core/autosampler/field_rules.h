#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/autosampler/autosampler_field.h"
#include "core/state/method_settings.h"

namespace zorvel {

// What the window does with an entry committed in one of its settings boxes.
struct FieldEditResult {
  bool beep = false;
  std::string message;     // shown in a "ZORVEL ERROR" box with the exclamation icon, when set
  bool showValue = false;  // the box shows the setting's (reset) value again
  bool select = false;     // the box's text is selected so that typing replaces it

  friend bool operator==(const FieldEditResult&, const FieldEditResult&) = default;
};

// Takes the text of a box into its setting. Numeric text is rounded (halves to even) and held
// to the box's rule: a failed rule resets the setting as the rule says (the frequencies keep
// what was typed). Text that is not a number leaves -1; unless the box is empty the operator
// is told. The step counts and the starting sample number are the caller's to follow.
FieldEditResult ApplyFieldText(AutosamplerSettings& settings, AutosamplerField field,
                               std::string_view text, std::int16_t tubeCount);

}  // namespace zorvel

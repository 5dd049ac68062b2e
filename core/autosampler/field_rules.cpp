#include "core/autosampler/field_rules.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "core/text/number_format.h"

namespace zorvel {

namespace {

std::string whole(int value) {
  return text::fixed(static_cast<double>(value), 0);
}

std::int16_t clamp16(long value) {
  return static_cast<std::int16_t>(std::clamp<long>(value, INT16_MIN, INT16_MAX));
}

// One rule of a box: the value passes, or the message and the value the box is reset to.
struct Broken {
  std::string message;
  std::optional<long> reset;  // none: the typed value is kept
};

using Verdict = std::optional<Broken>;

Verdict tubeRules(const AutosamplerSettings& s, long v, bool standard, std::int16_t tubeCount) {
  const long other = standard ? s.BlankTube : s.StandardTube;
  if (v < 1 || v > tubeCount)
    return Broken{"Answer must be between 1 and " + whole(tubeCount) + ".", 1};
  if (v == other) {
    return Broken{"You have the Standards and Blanks coming from the same tube.",
                  standard ? v - 1 : s.StandardTube + 1};
  }
  if (v >= s.StartingTube && v <= s.EndingTube) {
    return Broken{standard ? "You have the Standard located in the Sample section."
                           : "You have the Blank located in the Sample section.",
                  standard ? s.BlankTube - 1 : s.StandardTube + 1};
  }
  return std::nullopt;
}

Verdict rangeRule(long v, long low, long high, std::string message, long reset) {
  if (v >= low && v <= high) return std::nullopt;
  return Broken{std::move(message), reset};
}

Verdict ruleFor(const AutosamplerSettings& s, AutosamplerField field, long v,
                std::int16_t tubeCount) {
  const int maxUl = s.SyringeVolume * 1000;
  constexpr long kNoLimit = 1L << 30;
  switch (field) {
    case AutosamplerField::SampleVolume:
      return rangeRule(v, 1, maxUl,
                       "Answer must be in range of 1 - " + whole(maxUl) + ". Please try again.", 1);
    case AutosamplerField::BackFlow:
      if (v < 0) return Broken{"Answer must be greater than or equal to 0.", 0};
      return rangeRule(v, 0, s.SampleVolume,
                       "Answer must be less than or equal to " + whole(s.SampleVolume) + ".",
                       s.SampleVolume);
    case AutosamplerField::AirVolume:
      return rangeRule(v, 0, kNoLimit, "Answer must be >= 0.  Please try again.", 0);
    case AutosamplerField::FillSpeed:
    case AutosamplerField::DispenseSpeed:
    case AutosamplerField::FillSpeedFlush:
    case AutosamplerField::DispenseSpeedFlush:
      return rangeRule(v, 0, 40, "Answer must be in the range of 0-40.", 0);
    case AutosamplerField::FlushTime:
      return rangeRule(v, 0, maxUl, "Answer must be between 0 and " + whole(maxUl) + ".", 0);
    case AutosamplerField::AirDryTime:
      return rangeRule(v, 0, kNoLimit, "Answer must be greater than or equal to 0.", 0);
    case AutosamplerField::StartingTube:
      return rangeRule(v, 1, tubeCount, "Answer must be in range of 1-" + whole(tubeCount) + ".",
                       1);
    case AutosamplerField::EndingTube:
      return rangeRule(
          v, 1, tubeCount,
          "Answer must be in range of " + whole(s.StartingTube) + "-" + whole(tubeCount) + ".", 1);
    case AutosamplerField::StandardTube:
      return tubeRules(s, v, true, tubeCount);
    case AutosamplerField::BlankTube:
      return tubeRules(s, v, false, tubeCount);
    case AutosamplerField::StandardFreq:
    case AutosamplerField::BlankFreq: {
      const bool standard = field == AutosamplerField::StandardFreq;
      const int tube = standard ? s.StandardTube : s.BlankTube;
      const long limit = s.EndingTube - tube;
      if (v >= 0 && v <= limit) return std::nullopt;
      // No frequency fits while the reference tube lies past the ending tube: say which tube
      // to move rather than show a range that holds nothing.
      if (limit < 0) {
        return Broken{std::string("No frequency fits: the Ending Tube (") + whole(s.EndingTube) +
                          ") lies before the " + (standard ? "Standard" : "Blank") + " tube (" +
                          whole(tube) + ").",
                      std::nullopt};
      }
      return Broken{
          "Answer must be between 0 and " + whole(static_cast<int>(limit)) + ". Please try again.",
          std::nullopt};
    }
  }
  return std::nullopt;
}

bool isFrequency(AutosamplerField field) {
  return field == AutosamplerField::StandardFreq || field == AutosamplerField::BlankFreq;
}

}  // namespace

FieldEditResult ApplyFieldText(AutosamplerSettings& settings, AutosamplerField field,
                               std::string_view typed, std::int16_t tubeCount) {
  std::int16_t& value = FieldValue(settings, field);
  const auto number = text::parseNumber(typed);
  FieldEditResult result;
  if (!number) {
    value = -1;
    if (typed.empty()) return result;
    result.beep = true;
    result.select = true;
    result.message = isFrequency(field) ? "Answer must be numeric.  Please try again."
                                        : "Non-numeric entry.  Please try again.";
    return result;
  }
  const double rounded = text::roundHalfEven(*number);
  const long v =
      std::fabs(rounded) < 1e9 ? static_cast<long>(rounded) : (rounded < 0 ? -1L << 30 : 1L << 30);
  value = clamp16(v);
  const Verdict broken = ruleFor(settings, field, v, tubeCount);
  if (!broken) return result;
  result.beep = true;
  result.select = true;
  result.message = broken->message;
  if (broken->reset) {
    value = clamp16(*broken->reset);
    result.showValue = true;
  }
  return result;
}

}  // namespace zorvel

#include "core/method/method_codes.h"

#include <array>

#include "core/text/number_format.h"

namespace zorvel::method_codes {

namespace {

struct FilterName {
  EmissionFilter filter;
  std::string_view text;
};

using F = EmissionFilter;
constexpr std::array<FilterName, 7> kFilters{{{F::Cutoff290, "290 nm"},
                                              {F::Cutoff350, "350 nm"},
                                              {F::Cutoff390, "390 nm"},
                                              {F::Cutoff430, "430 nm"},
                                              {F::Cutoff530, "530 nm"},
                                              {F::None, "None"},
                                              {F::Transmittance1Percent, "1% transmittance"}}};

}  // namespace

std::string FilterText(EmissionFilter filter) {
  for (const auto& f : kFilters) {
    if (f.filter == filter) return std::string(f.text);
  }
  // A position the editor never produces; written as its number, which reads back as unchanged.
  return text::plain(WheelPosition(filter));
}

void ApplyFilterText(std::string_view text, EmissionFilter& filter) {
  for (const auto& f : kFilters) {
    if (f.text == text) {
      filter = f.filter;
      return;
    }
  }
}

std::string_view DeliveryText(Delivery delivery) {
  return delivery == Delivery::Autosampler ? "AutoSampler" : "Cuvette";
}
Delivery DeliveryFromText(std::string_view text) {
  return text == "AutoSampler" ? Delivery::Autosampler : Delivery::Cuvette;
}

std::string_view FileTypeText(DataFileType type) {
  return type == DataFileType::Macintosh ? "Macintosh" : "DOS/Windows";
}
DataFileType FileTypeFromText(std::string_view text) {
  return text == "Macintosh" ? DataFileType::Macintosh : DataFileType::DosWindows;
}

std::string_view ResolutionText(PumpResolution resolution) {
  return resolution == PumpResolution::Fine ? "Fine" : "Standard";
}
PumpResolution ResolutionFromText(std::string_view text) {
  return text == "Fine" ? PumpResolution::Fine : PumpResolution::Standard;
}

std::string_view DispositionText(Disposition disposition) {
  return disposition == Disposition::Save ? "Save" : "Throw Away";
}
Disposition DispositionFromText(std::string_view text) {
  return text == "Save" ? Disposition::Save : Disposition::ThrowAway;
}

std::string_view FlagText(bool flag) {
  return flag ? "True" : "False";
}

}  // namespace zorvel::method_codes

namespace zorvel {

std::string LineEndingFor(DataFileType type) {
  return type == DataFileType::DosWindows ? "\r\n" : "\r";
}

}  // namespace zorvel

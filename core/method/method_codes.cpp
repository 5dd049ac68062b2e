#include "core/method/method_codes.h"

#include <array>

#include "core/text/number_format.h"

namespace zorvel::method_codes {

namespace {

struct FilterName {
  std::int16_t code;
  std::string_view text;
};

// There is no code 6: the filter wheel position it would name holds no filter option.
constexpr std::array<FilterName, 7> kFilters{{{1, "290 nm"},
                                              {2, "350 nm"},
                                              {3, "390 nm"},
                                              {4, "430 nm"},
                                              {5, "530 nm"},
                                              {7, "None"},
                                              {8, "1% transmittance"}}};

}  // namespace

std::string FilterText(std::int16_t code) {
  for (const auto& f : kFilters) {
    if (f.code == code) return std::string(f.text);
  }
  // A code the editor never produces; written as its number, which reads back as unchanged.
  return text::plain(code);
}

void ApplyFilterText(std::string_view text, std::int16_t& code) {
  for (const auto& f : kFilters) {
    if (f.text == text) {
      code = f.code;
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

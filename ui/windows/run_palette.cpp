#include "ui/windows/run_palette.h"

#include <array>

namespace zorvel::ui {

QColor StandardColour(int index) {
  static constexpr std::array<QRgb, 16> kPalette = {
      0x000000, 0x000080, 0x008000, 0x008080, 0x800000, 0x800080, 0x808000, 0xC0C0C0,
      0x808080, 0x0000FF, 0x00FF00, 0x00FFFF, 0xFF0000, 0xFF00FF, 0xFFFF00, 0xFFFFFF};
  if (index < 0 || index >= static_cast<int>(kPalette.size())) return QColor(Qt::white);
  return QColor::fromRgb(kPalette[static_cast<std::size_t>(index)]);
}

}  // namespace zorvel::ui

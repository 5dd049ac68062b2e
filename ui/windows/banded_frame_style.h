#pragma once

#include <QProxyStyle>

namespace zorvel::ui {

// The application's own style, with group-box frames drawn in bands a few dozen rows high. Qt
// hands every picture fill of about a hundred rows or more to its thread pool; a group box's
// frame is a stretched picture, so each tall box cost hand-offs that take longer than the drawing
// (18 on the main window's first paint, over a millisecond). Drawn in bands, each fill stays
// on the window thread. The frames look exactly as before: clipping changes which pixels are
// drawn, not their values.
class BandedFrameStyle final : public QProxyStyle {
 public:
  // Takes ownership of `base`.
  explicit BandedFrameStyle(QStyle* base);

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;

  // The band height in the painter's units: below Qt's threshold at device pixel ratios up to 2.
  static constexpr int kBandRows = 40;
};

// Puts the application's style behind a BandedFrameStyle; leaves it as it is when that style
// cannot be made again by its name.
void UseBandedFrames();

}  // namespace zorvel::ui

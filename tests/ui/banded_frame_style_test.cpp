#include "ui/windows/banded_frame_style.h"

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QImage>
#include <QStyleFactory>
#include <memory>

#include "ui/qt_app.h"

namespace zorvel::ui {
namespace {

QImage Drawn(QGroupBox& box, QStyle* style, int pixelRatio) {
  box.setStyle(style);
  QImage image(box.size() * pixelRatio, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(pixelRatio);
  image.fill(Qt::white);
  box.render(&image);
  return image;
}

// Boxes taller than a band, with and without a title and a tick, odd heights included, on an
// ordinary and a high-density screen: every row of the frame is drawn once and as the style
// itself draws it.
TEST(BandedFrameStyle, DrawsGroupBoxesExactlyAsTheStyleItWraps) {
  testing::qtApp();
  std::unique_ptr<QStyle> plain(QStyleFactory::create("Fusion"));
  BandedFrameStyle banded(QStyleFactory::create("Fusion"));
  for (const auto& [title, checkable, width, height] :
       {std::tuple{"Synchronous Scan", false, 270, 191}, std::tuple{"", false, 300, 97},
        std::tuple{"Emission Filter", true, 230, 200}, std::tuple{"Read Time", false, 300, 39}}) {
    QGroupBox box(title);
    box.setCheckable(checkable);
    box.resize(width, height);
    for (const int ratio : {1, 2}) {
      EXPECT_EQ(Drawn(box, plain.get(), ratio), Drawn(box, &banded, ratio))
          << title << " " << height << " x" << ratio;
    }
  }
}

}  // namespace
}  // namespace zorvel::ui

#include "ui/windows/tray_picture.h"

#include <QPainter>
#include <algorithm>

namespace zorvel::ui {

namespace {

constexpr double kMarginPx = 8;
constexpr double kTubeRadiusMm = 7;

}  // namespace

TrayPicture::TrayPicture(const TrayGeometry& tray, const AutosamplerSettings& settings,
                         QWidget* parent)
    : QWidget(parent), tray_(tray), settings_(settings) {
  setObjectName("TrayPix");
  setMinimumSize(260, 160);
}

void TrayPicture::setArmPosition(float xMm, float yMm) {
  armMm_ = QPointF(xMm, yMm);
  update();
}

double TrayPicture::scale() const {
  return std::min((width() - 2 * kMarginPx) / kArmReachXMm,
                  (height() - 2 * kMarginPx) / kArmReachYMm);
}

QPointF TrayPicture::toWidget(QPointF mm) const {
  // The arm's Y grows towards the operator, downwards on the screen.
  return {kMarginPx + mm.x() * scale(), kMarginPx + mm.y() * scale()};
}

QColor TrayPicture::colourOf(int position) const {
  if (position == 0) return rinseColour();
  if (settings_.HasStandard && position == settings_.StandardTube) return standardColour();
  if (settings_.HasBlank && position == settings_.BlankTube) return blankColour();
  if (position >= settings_.StartingTube && position <= settings_.EndingTube) {
    return sampleColour();
  }
  return otherColour();
}

void TrayPicture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), Qt::white);
  const double s = scale();
  painter.setPen(Qt::darkGray);
  painter.drawRect(QRectF(toWidget({0, 0}), QSizeF(kArmReachXMm * s, kArmReachYMm * s)));

  QFont font = painter.font();
  font.setPixelSize(std::max(6, static_cast<int>(kTubeRadiusMm * s)));
  painter.setFont(font);
  const double r = kTubeRadiusMm * s;
  for (int k = 0; k < tray_.positionCount; ++k) {
    const TrayPosition& p = tray_.positions[static_cast<std::size_t>(k)];
    const QPointF centre = toWidget({p.X, p.Y});
    const QRectF box(centre.x() - r, centre.y() - r, 2 * r, 2 * r);
    painter.setPen(Qt::black);
    painter.setBrush(colourOf(k));
    if (k == 0) {
      painter.drawRect(box);
      painter.drawText(box, Qt::AlignCenter, "R");
    } else {
      painter.drawEllipse(box);
      painter.drawText(box, Qt::AlignCenter, QString::number(p.Number));
    }
  }

  // The arm: a red cross with a ring where it was last sent.
  const QPointF arm = toWidget(armMm_);
  painter.setPen(QPen(Qt::red, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawLine(arm - QPointF(2 * r, 0), arm + QPointF(2 * r, 0));
  painter.drawLine(arm - QPointF(0, 2 * r), arm + QPointF(0, 2 * r));
  painter.drawEllipse(arm, r * 1.3, r * 1.3);
}

}  // namespace zorvel::ui

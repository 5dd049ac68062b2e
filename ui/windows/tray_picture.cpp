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

void TrayPicture::setPureCount(int count) {
  pureCount_ = count;
  update();
}

QRectF TrayPicture::trayArea() const {
  if (tray_.positionCount <= 0) return QRectF(0, 0, kArmReachXMm, kArmReachYMm);
  const TrayPosition& first = tray_.positions[0];
  double left = first.X, right = first.X, top = first.Y, bottom = first.Y;
  for (int k = 1; k < tray_.positionCount; ++k) {
    const TrayPosition& p = tray_.positions[static_cast<std::size_t>(k)];
    left = std::min<double>(left, p.X);
    right = std::max<double>(right, p.X);
    top = std::min<double>(top, p.Y);
    bottom = std::max<double>(bottom, p.Y);
  }
  return QRectF(QPointF(left, top), QPointF(right, bottom))
      .adjusted(-kTubeRadiusMm, -kTubeRadiusMm, kTubeRadiusMm, kTubeRadiusMm);
}

// The tray's own extent fills the picture above the legend, not the arm's whole reach; an arm
// parked off the tray is drawn at the edge's clip.
double TrayPicture::scale() const {
  const QRectF area = trayArea();
  const double legendPx = 2 * fontMetrics().height() + kMarginPx;
  return std::min((width() - 2 * kMarginPx) / std::max(1.0, area.width()),
                  (height() - 2 * kMarginPx - legendPx) / std::max(1.0, area.height()));
}

QPointF TrayPicture::toWidget(QPointF mm) const {
  // The arm's Y grows towards the operator, downwards on the screen.
  const QPointF origin = trayArea().topLeft();
  return {kMarginPx + (mm.x() - origin.x()) * scale(), kMarginPx + (mm.y() - origin.y()) * scale()};
}

QColor TrayPicture::colourOf(int position) const {
  if (position == 0) return rinseColour();
  if (settings_.HasStandard && position == settings_.StandardTube) return standardColour();
  if (settings_.HasBlank && position == settings_.BlankTube) return blankColour();
  if (position >= settings_.StartingTube && position <= settings_.EndingTube) {
    return position < settings_.StartingTube + pureCount_ ? pureColour() : sampleColour();
  }
  return otherColour();
}

void TrayPicture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), Qt::white);
  const double s = scale();
  QFont font = painter.font();
  font.setPixelSize(std::max(8, static_cast<int>(kTubeRadiusMm * s)));
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
  drawLegend(painter, height() - 2 * fontMetrics().height() - kMarginPx / 2);
}

void TrayPicture::drawLegend(QPainter& painter, double top) {
  painter.setFont(font());
  const QFontMetrics metrics = fontMetrics();
  const double side = metrics.height() * 0.8;
  double x = kMarginPx;
  const std::pair<QColor, const char*> keys[] = {
      {sampleColour(), "Samples"}, {pureColour(), "Pures"},  {standardColour(), "Standard"},
      {blankColour(), "Blank"},    {rinseColour(), "Rinse"}, {otherColour(), "Unused"}};
  for (const auto& [colour, caption] : keys) {
    // The legend goes on to a second line rather than past the picture's edge.
    if (x + side + metrics.horizontalAdvance(caption) + 3 > width() - kMarginPx) {
      x = kMarginPx;
      top += metrics.height();
    }
    painter.setPen(Qt::black);
    painter.setBrush(colour);
    painter.drawRect(QRectF(x, top + (metrics.height() - side) / 2, side, side));
    x += side + 3;
    painter.drawText(QPointF(x, top + metrics.ascent()), caption);
    x += metrics.horizontalAdvance(caption) + 10;
  }
  painter.setPen(QPen(Qt::red, 2));
  const double mid = top + metrics.height() / 2.0;
  painter.drawLine(QPointF(x, mid), QPointF(x + side, mid));
  painter.drawLine(QPointF(x + side / 2, mid - side / 2), QPointF(x + side / 2, mid + side / 2));
  painter.setPen(Qt::black);
  painter.drawText(QPointF(x + side + 3, top + metrics.ascent()), "Arm");
}

}  // namespace zorvel::ui

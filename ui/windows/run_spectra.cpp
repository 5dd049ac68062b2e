#include "ui/windows/run_spectra.h"

#include <QPainter>

#include "ui/windows/run_palette.h"

namespace zorvel::ui {

namespace {

// The field behind the scan: light grey, on which the dark band colours (blue, red) and the
// light ones (yellow, light cyan) both stand out.
constexpr int kFieldColour = 7;
// Grid lines at quarters of each axis, faint on the field.
constexpr int kGridColour = 15;

}  // namespace

SpectraPlot::SpectraPlot(QWidget* parent) : QWidget(parent) {
  setObjectName("Spectra");
  setMinimumSize(240, 120);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void SpectraPlot::clear() {
  points_.clear();
  update();
}

void SpectraPlot::setScale(double lowerNm, double upperNm, double yMin, double yMax) {
  lowerNm_ = lowerNm;
  upperNm_ = upperNm;
  setVerticalScale(yMin, yMax);
}

void SpectraPlot::setVerticalScale(double yMin, double yMax) {
  yMin_ = yMin;
  yMax_ = yMax;
  update();
}

void SpectraPlot::addPoint(double wavelengthNm, double value, int paletteIndex) {
  points_.push_back({wavelengthNm, value, paletteIndex});
  update();
}

QImage SpectraPlot::picture(QSize size) const {
  QImage image(size, QImage::Format_RGB32);
  QPainter painter(&image);
  draw(painter, size);
  return image;
}

void SpectraPlot::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  draw(painter, size());
}

QPointF SpectraPlot::place(const Point& point, QSize size) const {
  // A scale without extent (limits not set yet) puts everything on the left or bottom edge.
  const double spanX = upperNm_ - lowerNm_;
  const double spanY = yMax_ - yMin_;
  const double fx = spanX > 0 ? (point.wavelengthNm - lowerNm_) / spanX : 0.0;
  const double fy = spanY > 0 ? (point.value - yMin_) / spanY : 0.0;
  return {fx * (size.width() - 1), (1.0 - fy) * (size.height() - 1)};
}

void SpectraPlot::setJoined(bool joined) {
  joined_ = joined;
  update();
}

void SpectraPlot::draw(QPainter& painter, QSize size) const {
  painter.fillRect(QRect(QPoint(0, 0), size), StandardColour(kFieldColour));
  painter.setPen(StandardColour(kGridColour));
  for (int q = 1; q < 4; ++q) {
    const int x = size.width() * q / 4;
    const int y = size.height() * q / 4;
    painter.drawLine(x, 0, x, size.height());
    painter.drawLine(0, y, size.width(), y);
  }
  painter.setRenderHint(QPainter::Antialiasing, false);
  painter.setClipRect(QRect(QPoint(0, 0), size));
  // Every reading is a dot of its own; when joined, consecutive points are also linked in the
  // later point's colour.
  for (std::size_t i = 0; i < points_.size(); ++i) {
    const QColor colour = StandardColour(points_[i].paletteIndex);
    const QPointF at = place(points_[i], size);
    QPen pen(colour);
    pen.setWidth(2);
    painter.setPen(pen);
    if (joined_ && i > 0) painter.drawLine(place(points_[i - 1], size), at);
    painter.drawPoint(at);
  }
}

}  // namespace zorvel::ui

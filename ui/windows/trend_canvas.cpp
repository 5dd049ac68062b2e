#include "ui/windows/trend_canvas.h"

#include <QPainter>

#include "ui/windows/run_palette.h"

namespace zorvel::ui {

QcCanvas::QcCanvas(const QString& objectName, QWidget* parent) : QWidget(parent) {
  setObjectName(objectName);
  setMinimumSize(160, 100);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void QcCanvas::setPlot(const QcPlot& plot) {
  plot_ = plot;
  update();
}

QImage QcCanvas::picture(QSize size) const {
  QImage image(size, QImage::Format_RGB32);
  QPainter painter(&image);
  draw(painter, size);
  return image;
}

void QcCanvas::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  draw(painter, size());
}

QPointF QcCanvas::place(double x, double y, QSize size) const {
  const double width = plot_.right - plot_.left;
  const double height = plot_.top - plot_.bottom;
  const double fx = width == 0 ? 0 : (x - plot_.left) / width;
  const double fy = height == 0 ? 0 : (plot_.top - y) / height;
  return {fx * (size.width() - 1), fy * (size.height() - 1)};
}

void QcCanvas::draw(QPainter& painter, QSize size) const {
  painter.fillRect(QRect(QPoint(0, 0), size), StandardColour(15));
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const QcPlot::Line& line : plot_.lines) {
    painter.setPen(QPen(StandardColour(line.paletteIndex), line.width));
    painter.drawLine(place(line.x1, line.y1, size), place(line.x2, line.y2, size));
  }
  for (const QcPlot::Point& point : plot_.points) {
    const QPointF at = place(point.x, point.y, size);
    const double half = point.width / 2.0;
    painter.fillRect(QRectF(at.x() - half, at.y() - half, point.width, point.width),
                     StandardColour(point.paletteIndex));
  }
}

}  // namespace zorvel::ui

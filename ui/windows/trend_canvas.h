#pragma once

#include <QImage>
#include <QWidget>

#include "core/quality/quality_plot.h"

namespace zorvel::ui {

// A drawing area with a user scale, as the alert window's BoxPlot and the trend window's
// Spectra draw: lines and points in standard palette colours on a white field.
class QcCanvas final : public QWidget {
  Q_OBJECT
 public:
  explicit QcCanvas(const QString& objectName, QWidget* parent = nullptr);

  void setPlot(const QcPlot& plot);
  const QcPlot& plot() const { return plot_; }
  // The drawing as it stands at the given size (tests, printing).
  QImage picture(QSize size) const;

  QSize sizeHint() const override { return {320, 200}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void draw(QPainter& painter, QSize size) const;
  QPointF place(double x, double y, QSize size) const;

  QcPlot plot_;
};

}  // namespace zorvel::ui

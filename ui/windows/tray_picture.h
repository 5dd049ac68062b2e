#pragma once

#include <QPointF>
#include <QRectF>
#include <QWidget>

#include "core/state/method_settings.h"
#include "core/state/tray_geometry.h"

namespace zorvel::ui {

// TrayPix: the tray drawn to fill the picture, every position with its number, the rinse
// station, the sample range, the pures, the standard and blank tubes in their own colours, a
// cross where the arm was last sent, and a legend of the colours under it.
class TrayPicture final : public QWidget {
  Q_OBJECT
 public:
  TrayPicture(const TrayGeometry& tray, const AutosamplerSettings& settings,
              QWidget* parent = nullptr);

  void setArmPosition(float xMm, float yMm);
  // The method's pure count: the first tubes of the sample range hold the pures.
  void setPureCount(int count);
  QPointF armPositionMm() const { return armMm_; }
  // Where a point of the arm's reach (mm) lies in the widget.
  QPointF toWidget(QPointF mm) const;

  static QColor sampleColour() { return QColor(144, 238, 144); }
  static QColor standardColour() { return QColor(255, 128, 128); }
  static QColor blankColour() { return QColor(128, 176, 255); }
  static QColor rinseColour() { return QColor(0, 200, 200); }
  static QColor otherColour() { return QColor(220, 220, 220); }
  static QColor pureColour() { return QColor(255, 215, 0); }
  // The colour a tray position is drawn in.
  QColor colourOf(int position) const;

  QSize sizeHint() const override { return {460, 330}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  double scale() const;
  QRectF trayArea() const;  // the tray's positions and the arm, mm
  void drawLegend(QPainter& painter, double top);

  const TrayGeometry& tray_;
  const AutosamplerSettings& settings_;
  QPointF armMm_;
  int pureCount_ = 0;
};

}  // namespace zorvel::ui

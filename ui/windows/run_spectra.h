#pragma once

#include <QImage>
#include <QWidget>
#include <vector>

namespace zorvel::ui {

// Spectra, the run window's scan plot: the points of one synchronous scan, each in the colour
// of its wavelength band, on a dark field scaled lowerNm..upperNm across and yMin..yMax up.
// The points are kept, so a new vertical scale (AutoHeight, or the operator's YMin/YMax)
// redraws the same scan.
class SpectraPlot final : public QWidget {
  Q_OBJECT
 public:
  explicit SpectraPlot(QWidget* parent = nullptr);

  void clear();
  void setScale(double lowerNm, double upperNm, double yMin, double yMax);
  void setVerticalScale(double yMin, double yMax);
  // One point; paletteIndex is a colour of the standard 16-colour palette.
  void addPoint(double wavelengthNm, double value, int paletteIndex);
  // Each reading is plotted as a point of its own; joining them into a line is an option.
  void setJoined(bool joined);
  bool joined() const { return joined_; }

  int pointCount() const { return static_cast<int>(points_.size()); }
  double lowerNm() const { return lowerNm_; }
  double upperNm() const { return upperNm_; }
  double yMin() const { return yMin_; }
  double yMax() const { return yMax_; }

  // The plot as it stands, drawn at the given size (printing, tests).
  QImage picture(QSize size) const;

  QSize sizeHint() const override { return {480, 200}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Point {
    double wavelengthNm;
    double value;
    int paletteIndex;
  };
  void draw(QPainter& painter, QSize size) const;
  QPointF place(const Point& point, QSize size) const;

  std::vector<Point> points_;
  double lowerNm_ = 200.0;
  double upperNm_ = 800.0;
  double yMin_ = 0.0;
  double yMax_ = 100.0;
  bool joined_ = false;
};

}  // namespace zorvel::ui

#include "ui/windows/banded_frame_style.h"

#include <QApplication>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>

namespace zorvel::ui {

BandedFrameStyle::BandedFrameStyle(QStyle* base) : QProxyStyle(base) {}

void BandedFrameStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                                     QPainter* painter, const QWidget* widget) const {
  if (element != PE_FrameGroupBox || option == nullptr || painter == nullptr ||
      option->rect.height() <= kBandRows) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  const QRect frame = option->rect;
  for (int top = frame.top(); top <= frame.bottom(); top += kBandRows) {
    painter->save();
    painter->setClipRect(QRect(frame.left(), top, frame.width(), kBandRows), Qt::IntersectClip);
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    painter->restore();
  }
}

void UseBandedFrames() {
  if (QStyle* own = QStyleFactory::create(QApplication::style()->name()))
    QApplication::setStyle(new BandedFrameStyle(own));
}

}  // namespace zorvel::ui

#include "Views/Hatching.h"

#include <QPainter>

namespace orbel {

namespace {

constexpr qreal spacing = 10;

} // namespace

Hatching::Hatching(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &Hatching::linesChanged, this, [this] { update(); });
}

void Hatching::paint(QPainter* painter) {
    painter->setPen(QPen(lines_, 1));
    // From the lower left to the upper right; the first lines begin left of the item.
    for (qreal x = spacing / 2; x < width() + height(); x += spacing)
        painter->drawLine(QPointF(x - height(), height()), QPointF(x, 0));
}

} // namespace orbel

#include "Views/Hatching.h"

#include <QPainter>
#include <QtMath>

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
    const int lines = qCeil((width() + height()) / spacing - 0.5);
    for (int i = 0; i < lines; ++i) {
        const qreal x = spacing * (i + 0.5);
        painter->drawLine(QPointF(x - height(), height()), QPointF(x, 0));
    }
}

} // namespace orbel

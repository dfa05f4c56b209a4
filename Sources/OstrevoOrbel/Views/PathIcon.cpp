#include "Views/PathIcon.h"

#include <QPainter>
#include <QSvgRenderer>

namespace orbel {

namespace {

constexpr int viewSize = 16;

QByteArray asSvg(const QString& path, const QColor& color, qreal stroke) {
    return QStringLiteral(
               "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 %1 %1'><path d='%2' fill='none' "
               "stroke='%3' stroke-opacity='%4' stroke-width='%5' stroke-linecap='round' "
               "stroke-linejoin='round'/></svg>")
        .arg(QString::number(viewSize), path.toHtmlEscaped(), color.name(), QString::number(color.alphaF()),
             QString::number(stroke))
        .toUtf8();
}

} // namespace

PathIcon::PathIcon(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    setImplicitSize(viewSize, viewSize);
    connect(this, &PathIcon::changed, this, [this] { update(); });
}

void PathIcon::paint(QPainter* painter) {
    if (path_.isEmpty())
        return;
    QSvgRenderer(asSvg(path_, color_, stroke_)).render(painter, boundingRect());
}

} // namespace orbel

#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// An icon drawn from a path string in a view of 16 x 16, scaled to the item, as an outline in one colour. A
/// painted item, because shapes have smooth edges with some renderers only.
class PathIcon : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// In the path language of SVG; an invalid text draws nothing.
    Q_PROPERTY(QString path MEMBER path_ NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    /// The width of the outline in the view's units.
    Q_PROPERTY(qreal stroke MEMBER stroke_ NOTIFY changed)

public:
    explicit PathIcon(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QString path_;
    QColor color_ = Qt::black;
    qreal stroke_ = 1.4;
};

} // namespace orbel

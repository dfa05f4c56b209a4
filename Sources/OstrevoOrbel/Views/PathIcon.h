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
    Q_PROPERTY(QString path READ path WRITE setPath NOTIFY pathChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(qreal stroke READ stroke WRITE setStroke NOTIFY strokeChanged)

public:
    explicit PathIcon(QQuickItem* parent = nullptr);

    /// In the path language of SVG; nothing is drawn for a text that is none.
    QString path() const { return path_; }
    void setPath(const QString& path);
    QColor color() const { return color_; }
    void setColor(const QColor& color);
    /// The width of the outline in the view's units.
    qreal stroke() const { return stroke_; }
    void setStroke(qreal stroke);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void pathChanged();
    void colorChanged();
    void strokeChanged();

private:
    QString path_;
    QColor color_ = Qt::black;
    qreal stroke_ = 1.4;
};

} // namespace orbel

#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// A ground with thin lines at 45 degrees, ten apart along each axis: what was not measured.
class Hatching : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor lines MEMBER lines_ NOTIFY linesChanged)
    Q_PROPERTY(QColor ground READ fillColor WRITE setFillColor NOTIFY fillColorChanged)

public:
    explicit Hatching(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void linesChanged();

private:
    QColor lines_ = Qt::gray;
};

} // namespace orbel

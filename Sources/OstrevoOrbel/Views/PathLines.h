#pragma once

#include <QFont>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// Breaks paths into lines, for the places that show them whole.
class PathLines : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// The path with line separators in it, so that each line is at most `width` wide in this font. Lines end
    /// after slashes; only a name that is longer than a line is broken within.
    Q_INVOKABLE static QString broken(const QString& path, const QFont& font, qreal width);
};

} // namespace orbel

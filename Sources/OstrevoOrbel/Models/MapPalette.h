#pragma once

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>
#include <QVariantMap>

namespace orbel {

/// The colours and glyphs that screens share with the map.
class MapPalette : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    /// Of the kinds of content, by value.
    Q_PROPERTY(QStringList glyphs READ glyphs CONSTANT)
    /// Of the changes, by value.
    Q_PROPERTY(QStringList changeGlyphs READ changeGlyphs CONSTANT)

public:
    using QObject::QObject;

    QStringList glyphs() const;
    QStringList changeGlyphs() const;
    /// "ground", "edge", "hatch", "hatchGround"; "frames" by depth; "fills" and "labels" by
    /// a kind of content, "changeFills" and "changeLabels" by a NodeChange.
    Q_INVOKABLE QVariantMap colors(bool dark, bool highContrast) const;
};

} // namespace orbel

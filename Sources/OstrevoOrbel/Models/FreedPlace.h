#pragma once

#include "Find/SystemPlaces.h"
#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <QCoreApplication>
#include <QObject>
#include <QString>

namespace orbel {

/// A row of what a command frees outside the home. A plain value.
struct FreedPlace {
    Q_GADGET
    Q_PROPERTY(QString size READ size)
    Q_PROPERTY(QString what READ what)
    Q_PROPERTY(QString path READ path)
    Q_PROPERTY(QString command READ command)
    Q_DECLARE_TR_FUNCTIONS(FreedPlace)

public:
    SystemPlace place;

    /// "4.2 GB", "up to 4.2 GB"
    QString size() const {
        const auto figure = ByteFigure(place.bytes).text();
        return place.isUpTo ? tr("up to %1").arg(figure) : figure;
    }
    QString what() const { return textOf(place.what); }
    QString path() const { return textOf(place.path); }
    /// To be copied, so nothing in it is written out for people.
    QString command() const { return QString::fromStdString(place.command); }

    bool operator==(const FreedPlace&) const = default;
};

} // namespace orbel

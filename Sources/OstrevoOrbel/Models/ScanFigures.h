#pragma once

#include "Models/ByteFigure.h"
#include "Scan/ScanProgress.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// The figures of the scan that runs, or of the last one that ran. They change at most four times a second.
class ScanFigures : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    Q_PROPERTY(orbel::ByteFigure measured READ measured NOTIFY changed)
    /// "612,408".
    Q_PROPERTY(QString entries READ entries NOTIFY changed)
    /// "1,284,301 entries".
    Q_PROPERTY(QString entriesText READ entriesText NOTIFY changed)
    /// "3.9 s".
    Q_PROPERTY(QString duration READ duration NOTIFY changed)
    /// "97".
    Q_PROPERTY(QString unreadable READ unreadable NOTIFY changed)

public:
    using QObject::QObject;

    void set(const ScanProgress& progress);

    ByteFigure measured() const { return ByteFigure(bytes_); }
    QString entries() const;
    QString entriesText() const;
    QString duration() const;
    QString unreadable() const;

Q_SIGNALS:
    void changed();

private:
    quint64 entries_ = 0;
    quint64 bytes_ = 0;
    quint64 unreadable_ = 0;
    double seconds_ = 0;
};

} // namespace orbel

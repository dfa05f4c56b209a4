#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// What the Uninstall screen says of the selected application. A plain value.
class AppFacts {
    Q_GADGET
    QML_VALUE_TYPE(appFacts)
    /// Whether one is selected; everything else is empty when not.
    Q_PROPERTY(bool valid MEMBER valid)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString icon MEMBER icon)
    Q_PROPERTY(QString initial MEMBER initial)
    Q_PROPERTY(QString version MEMBER version)
    Q_PROPERTY(QString source MEMBER source)
    /// "not running", "running", "running, 3 processes"; empty until known
    Q_PROPERTY(QString runningText MEMBER runningText)
    /// "4.4 GB", and what it is made of: "app 1.4 GB, leftovers 3.0 GB"
    Q_PROPERTY(QString total MEMBER total)
    Q_PROPERTY(QString parts MEMBER parts)
    /// What has to be known before anything of it is moved; empty when nothing has.
    Q_PROPERTY(QString warning MEMBER warning)
    Q_PROPERTY(QString explanation MEMBER explanation)
    /// What removes it in a terminal; empty when that is not known.
    Q_PROPERTY(QString command MEMBER command)
    /// It runs, and has not been asked to quit.
    Q_PROPERTY(bool canAskToQuit MEMBER canAskToQuit)
    /// It is not installed any more: only what it left is there.
    Q_PROPERTY(bool removed MEMBER removed)

public:
    bool valid = false;
    QString name;
    QString icon;
    QString initial;
    QString version;
    QString source;
    QString runningText;
    QString total;
    QString parts;
    QString warning;
    QString explanation;
    QString command;
    bool canAskToQuit = false;
    bool removed = false;

    bool operator==(const AppFacts&) const = default;
};

} // namespace orbel

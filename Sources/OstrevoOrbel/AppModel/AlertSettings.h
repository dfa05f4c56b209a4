#pragma once

#include "Alerts/LowDiskAlert.h"
#include "Alerts/LowDiskSettings.h"
#include "AppModel/AppEnvironment.h"
#include "AppModel/DiskState.h"
#include "AppModel/Notice.h"
#include "Models/Wording.h"

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// The low-disk alert, and whether the desktop starts the application so that it can be given. A change
/// applies and is kept at once. Used on the main thread.
class AlertSettings final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled NOTIFY changed)
    /// The labels of the thresholds, in order, and the index of the chosen one; -1 for a custom threshold.
    Q_PROPERTY(QStringList thresholds READ thresholds CONSTANT)
    Q_PROPERTY(int choice READ choice WRITE setChoice NOTIFY changed)
    /// When free space is looked at, which is less where the desktop shows no icon of a closed window.
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
    /// The notification as it would look now.
    Q_PROPERTY(QString sampleTitle READ sampleTitle CONSTANT)
    Q_PROPERTY(QString sampleBody READ sampleBody NOTIFY changed)
    Q_PROPERTY(bool openAtLogin READ opensAtLogin WRITE setOpenAtLogin NOTIFY changed)

public:
    /// Begins to watch when the alert is on. The arguments outlive this.
    AlertSettings(const AppEnvironment& environment, const DiskState& disk, Notice& notice);

    const LowDiskSettings& lowDisk() const { return lowDisk_; }
    bool isEnabled() const { return lowDisk_.enabled; }
    void setEnabled(bool enabled);
    QStringList thresholds() const;
    int choice() const;
    void setChoice(int choice);
    QString explanation() const;
    QString sampleTitle() const { return textOf(LowDiskAlert::message(0).title); }
    QString sampleBody() const;
    bool opensAtLogin() const { return environment_.loginItem->isEnabled(); }
    void setOpenAtLogin(bool opens);

Q_SIGNALS:
    void changed();

private:
    static LowDiskSettings loadLowDiskSettings(const QSettings& settings);
    void saveLowDisk();
    void restartAlertLoop();
    void checkFreeSpace();

    const AppEnvironment& environment_;
    const DiskState& disk_;
    Notice& notice_;
    LowDiskSettings lowDisk_;
    LowDiskAlert lowDiskAlert_;
    QTimer alertTimer_;
};

} // namespace orbel

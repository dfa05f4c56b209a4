#pragma once

#include "AppModel/AppEnvironment.h"
#include "AppModel/LatestJob.h"
#include "AppModel/Notice.h"
#include "Saved/ScanArchive.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

/// Whether scans are kept, what that takes, and whether the window measures again when it opens. Belongs to
/// the AppModel; used on the main thread, while the archive is looked at on threads of its own.
class KeptScanSettings final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// Complete scans are kept, and the window opens with the last one.
    Q_PROPERTY(bool keeps READ keeps NOTIFY changed)
    /// What the window opened with is measured again at once.
    Q_PROPERTY(bool measuresAtStart READ measuresAtStart WRITE setMeasuresAtStart NOTIFY changed)
    /// Something is kept.
    Q_PROPERTY(bool any READ isAny NOTIFY changed)
    /// "12 kept scans"
    Q_PROPERTY(QString count READ count NOTIFY changed)
    /// "84 MB"
    Q_PROPERTY(QString size READ size NOTIFY changed)

public:
    /// The arguments outlive this.
    KeptScanSettings(const AppEnvironment& environment, Notice& notice);

    /// Keeps scans from now on.
    Q_INVOKABLE void keep();
    /// Keeps none any more, and removes all that are kept for good.
    Q_INVOKABLE void keepNone();
    /// Looks again how many there are.
    Q_INVOKABLE void refresh();

    bool keeps() const { return keeps_; }
    bool measuresAtStart() const { return measuresAtStart_; }
    void setMeasuresAtStart(bool measures);
    bool isAny() const { return size_.scans > 0; }
    QString count() const;
    QString size() const;

Q_SIGNALS:
    void changed();

private:
    void setKeeps(bool keeps);

    const AppEnvironment& environment_;
    Notice& notice_;
    ScanArchive archive_;
    bool keeps_;
    bool measuresAtStart_;
    ScanArchive::Size size_;
    LatestJob job_{"orbel.archive"};
};

} // namespace orbel

#pragma once

#include "AppModel/Activity.h"
#include "AppModel/KeptScanFlow.h"
#include "AppModel/LatestJob.h"
#include "AppModel/ScanFlow.h"

#include <optional>
#include <QList>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <QUrl>
#include <string>

namespace orbel {

/// What is dragged over the window: the first folder of it can be dropped to be measured, or, where there is
/// none, the first scan that was kept to be shown. Belongs to the
/// AppModel; used on the main thread.
class DropFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// Something is over the window.
    Q_PROPERTY(bool over READ isOver NOTIFY changed)
    /// "Measure ~/Videos", "Open ~/larch.orbel", or why a drop does nothing; empty until that is known.
    Q_PROPERTY(QString statement READ statement NOTIFY changed)
    /// What to know besides; mostly empty.
    Q_PROPERTY(QString sentence READ sentence NOTIFY changed)

public:
    /// The references outlive this.
    DropFlow(const AppEnvironment& environment, ScanFlow& scan, KeptScanFlow& kept, const Activity& activity);

    /// Something has come over the window.
    Q_INVOKABLE void enter(const QList<QUrl>& urls);
    Q_INVOKABLE void leave();
    /// Measures the folder or opens the scan, as soon as it is known which.
    Q_INVOKABLE void drop();

    bool isOver() const { return isOver_; }
    QString statement() const;
    QString sentence() const;

Q_SIGNALS:
    void changed();

private:
    struct Found {
        std::optional<std::string> folder; ///< the first one
        int folders = 0;
        std::optional<std::string> scanFile; ///< the first one
    };

    void take(Found found);

    const AppEnvironment& environment_;
    ScanFlow& scan_;
    KeptScanFlow& kept_;
    const Activity& activity_;
    bool isOver_ = false;
    bool isDropped_ = false;
    std::optional<Found> found_;
    LatestJob job_{"orbel.drop"};
};

} // namespace orbel

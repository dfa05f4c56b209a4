#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/TreeEdits.h"
#include "Scan/Rescan.h"
#include "Scan/ScanResult.h"

#include <memory>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <string>

namespace orbel {

/// Measures one folder of the shown tree again, and brings it into the tree. Belongs to the AppModel; used on
/// the main thread, while the walk runs on threads of its own.
///
/// What changes the disk, or measures all of it, makes a walk that is under way void: it may have seen things
/// as they were before.
class RescanFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    Q_PROPERTY(bool running READ isRunning NOTIFY changed)
    /// "Measuring ~/Videos again…"; empty while nothing is.
    Q_PROPERTY(QString text READ text NOTIFY changed)

public:
    /// The arguments outlive this.
    RescanFlow(const AppEnvironment& environment, ScanFlow& scan, TreeEdits& edits, MoveFlow& moves,
               const Activity& activity, Notice& notice);

    /// Measures this node of the shown tree, or the folder that it is in; a root by a whole new scan. Ignored
    /// while that or anything else is under way that measures or moves, and for what was measured elsewhere.
    Q_INVOKABLE void start(quint32 node);
    /// Measures all of what is shown beside it: the new tree then takes its place at once, so that the map's
    /// folder, the selection, and what is ticked and has not changed stay. Ignored as the first is.
    void startWhole();
    /// The tree stays as it was.
    Q_INVOKABLE void stop();

    bool isRunning() const { return job_.isRunning(); }
    QString text() const { return text_; }

Q_SIGNALS:
    void changed();

private:
    struct Measured {
        RescanTarget target;
        ScanResult result;
    };

    void take(const FileTree& tree, Measured measured);
    void takeWhole(ScanOutcome fresh);

    const AppEnvironment& environment_;
    ScanFlow& scan_;
    TreeEdits& edits_;
    MoveFlow& moves_;
    const Activity& activity_;
    Notice& notice_;
    QString text_;
    LatestJob job_{"orbel.rescan"};
};

} // namespace orbel

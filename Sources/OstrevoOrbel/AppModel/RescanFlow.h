#pragma once

#include "AppModel/Inbox.h"
#include "Scan/Rescan.h"
#include "Scan/ScanCancellation.h"
#include "Scan/ScanResult.h"

#include <memory>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <string>

namespace orbel {

class AppModel;

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
    explicit RescanFlow(AppModel& app);
    ~RescanFlow() override;

    /// Measures this node of the shown tree, or the folder that it is in; a root by a whole new scan. Ignored
    /// while that or anything else is under way that measures or moves.
    Q_INVOKABLE void start(quint32 node);
    /// The tree stays as it was.
    Q_INVOKABLE void stop();

    bool isRunning() const { return cancellation_ != nullptr; }
    QString text() const { return text_; }

Q_SIGNALS:
    void changed();

private:
    struct Measured {
        RescanTarget target;
        ScanResult result;
    };

    void take(const ScanCancellation* token, const std::shared_ptr<const FileTree>& tree, Measured measured);

    AppModel& app_;
    std::shared_ptr<ScanCancellation> cancellation_; ///< of the one that runs
    QString text_;

    Inbox inbox_; ///< the last member: what it delivers finds all others alive
};

} // namespace orbel

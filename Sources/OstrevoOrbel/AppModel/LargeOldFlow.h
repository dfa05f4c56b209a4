#pragma once

#include "AppModel/Inbox.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

class AppModel;

/// The large and old files: the filter, the rows it leaves, and what is ticked of them. Belongs to
/// the AppModel; used on the main thread, while what takes long runs on threads of its own.
class LargeOldFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "86"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "86 files · 120.4 GB"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)

public:
    explicit LargeOldFlow(AppModel& app);

    QString countText() const;
    QString summary() const;
    bool isBusy() const { return false; }

Q_SIGNALS:
    void changed();

private:
    AppModel& app_;

    Inbox inbox_; ///< the last member: what it delivers finds all others alive
};

} // namespace orbel

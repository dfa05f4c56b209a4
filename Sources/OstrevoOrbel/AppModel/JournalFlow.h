#pragma once

#include "AppModel/Inbox.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

class AppModel;

/// The journal by sessions, what has become of each item, and the way back from the Trash. Belongs to
/// the AppModel; used on the main thread, while what takes long runs on threads of its own.
class JournalFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "7"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "7 sessions"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)

public:
    explicit JournalFlow(AppModel& app);

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

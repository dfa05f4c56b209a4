#pragma once

#include "AppModel/Inbox.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

class AppModel;

/// The search for files of the same content, the groups that it found, which copy of each is kept and which
/// are ticked. Belongs to
/// the AppModel; used on the main thread, while what takes long runs on threads of its own.
class DuplicatesFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "41"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "41 groups · up to 52.8 GB"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)

public:
    explicit DuplicatesFlow(AppModel& app);

    QString countText() const;
    QString summary() const;
    bool isBusy() const { return false; }
    void search() {}

Q_SIGNALS:
    void changed();

private:
    AppModel& app_;

    Inbox inbox_; ///< the last member: what it delivers finds all others alive
};

} // namespace orbel

#pragma once

#include "AppModel/Inbox.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace orbel {

class AppModel;

/// The empty folders and the broken shortcuts. Belongs to
/// the AppModel; used on the main thread, while what takes long runs on threads of its own.
class TidyFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")
    /// "13"; empty until known.
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    /// "11 empty folders, 2 broken shortcuts"; empty until known.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)

public:
    explicit TidyFlow(AppModel& app);

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

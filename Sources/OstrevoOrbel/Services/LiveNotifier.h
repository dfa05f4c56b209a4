#pragma once

#include "Ports/Notifier.h"

#include <QDBusConnection>
#include <QObject>

namespace orbel {

/// The desktop's notifications (org.freedesktop.Notifications). Where no such service is running or can be
/// started, the launcher's badge and the window manager's attention mark stand in for them.
class LiveNotifier final : public QObject, public Notifier {
    Q_OBJECT

public:
    explicit LiveNotifier(QDBusConnection bus);

    void requestPermission(std::function<void(bool)> answer) override;
    void post(const LowDiskAlert::Message& message) override;

    /// Takes the badge back.
    void clearBadge();

Q_SIGNALS:
    /// The user clicked a notification.
    void opened();

private Q_SLOTS:
    void takeAction(uint id, const QString& action);

private:
    void notify(const LowDiskAlert::Message& message);
    void showBadge(bool visible);

    QDBusConnection bus_;
    uint lastId_ = 0; ///< a newer message takes the place of the one before
};

} // namespace orbel

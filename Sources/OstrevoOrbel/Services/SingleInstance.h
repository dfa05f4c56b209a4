#pragma once

#include "Services/InstanceRequest.h"

#include <memory>
#include <QDBusConnection>
#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QVariantMap>

namespace orbel {

/// Sees to it that a user has one window: the first start owns the application's name on the session bus, or,
/// where there is no bus, a lock file with a socket beside it; a later one hands over what it was asked for.
class SingleInstance final : public QObject {
    Q_OBJECT

public:
    /// `bus`: the session bus, connected or not; `folder`: of the lock file, for this user alone.
    SingleInstance(QDBusConnection bus, const QString& folder);
    ~SingleInstance() override;

    /// Whether a start with these options is one that others may take the place of. A run that is scripted is
    /// measured or photographed itself, so it is not.
    static bool appliesTo(const LaunchOptions& options);

    /// True: this process is the one. False: another one has taken the request, so this one has to end. When
    /// the other does not answer within some seconds, this one goes on beside it.
    bool claim(const InstanceRequest& request);

Q_SIGNALS:
    /// Another start was made: the window has to come to the front.
    void requested(const orbel::InstanceRequest& request);
    /// The session asks the application to end.
    void quitRequested();

private:
    enum class Claim { first, handedOver, alone };

    Claim claimOnBus(const InstanceRequest& request);
    Claim claimByLockFile(const InstanceRequest& request);
    bool handOverOnBus(const InstanceRequest& request);
    bool handOverBySocket(const InstanceRequest& request) const;
    void readRequests();

    QDBusConnection bus_;
    bool ownsName_ = false;
    QString socketPath_;
    QLockFile lock_;
    QLocalServer server_;
};

/// The interface that desktops call to open an application that is running. Each word is the interface's own.
class ApplicationInterface final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationInterface(SingleInstance& instance);

public Q_SLOTS:
    // NOLINTBEGIN(readability-identifier-naming): called by these names over the bus
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& action, const QVariantList& parameters,
                        const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    void request(InstanceRequest request, const QVariantMap& platformData);

    SingleInstance& instance_;
};

} // namespace orbel

#include "Services/SingleInstance.h"

#include "Services/ApplicationId.h"
#include "Util/FileUrl.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QLocalSocket>

namespace orbel {

namespace {

constexpr int answerMilliseconds = 5000;
constexpr const char* interfaceName = "org.freedesktop.Application";
/// Beyond the interface's own calls: all of a request in one, as its text.
const QString requestAction = QStringLiteral("request");

} // namespace

SingleInstance::SingleInstance(QDBusConnection bus, const QString& folder)
    : bus_(std::move(bus)),
      socketPath_(folder + QStringLiteral("/ostrevo-orbel.socket")),
      lock_(folder + QStringLiteral("/ostrevo-orbel.lock")) {
    lock_.setStaleLockTime(0); // held as long as its process lives, however long that is
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::readRequests);
}

SingleInstance::~SingleInstance() {
    if (ownsName_)
        bus_.unregisterService(QLatin1String(ApplicationId::busName));
}

bool SingleInstance::appliesTo(const LaunchOptions& options) {
    return !options.snapshotPath && !options.diagnosticsPath && !options.quitAfterScan;
}

bool SingleInstance::claim(const InstanceRequest& request) {
    const auto outcome = bus_.isConnected() ? claimOnBus(request) : claimByLockFile(request);
    return outcome != Claim::handedOver;
}

SingleInstance::Claim SingleInstance::claimOnBus(const InstanceRequest& request) {
    // Whoever sees the name must find the object behind it.
    auto* const object = new ApplicationInterface(*this);
    object->setParent(this);
    bus_.registerObject(QLatin1String(ApplicationId::objectPath), object, QDBusConnection::ExportAllSlots);
    const auto reply = bus_.interface()->registerService(QLatin1String(ApplicationId::busName),
                                                         QDBusConnectionInterface::DontQueueService,
                                                         QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        ownsName_ = true;
        return Claim::first;
    }
    bus_.unregisterObject(QLatin1String(ApplicationId::objectPath));
    delete object;
    return handOverOnBus(request) ? Claim::handedOver : Claim::alone;
}

bool SingleInstance::handOverOnBus(const InstanceRequest& request) {
    auto call = QDBusMessage::createMethodCall(
        QLatin1String(ApplicationId::busName), QLatin1String(ApplicationId::objectPath),
        QLatin1String(interfaceName), QStringLiteral("ActivateAction"));
    call << requestAction << QVariantList{QString::fromUtf8(request.text())} << QVariantMap();
    call.setAutoStartService(false);
    return bus_.call(call, QDBus::Block, answerMilliseconds).type() == QDBusMessage::ReplyMessage;
}

SingleInstance::Claim SingleInstance::claimByLockFile(const InstanceRequest& request) {
    if (lock_.tryLock(0)) {
        QLocalServer::removeServer(socketPath_); // of a process that is gone
        return server_.listen(socketPath_) ? Claim::first : Claim::alone;
    }
    return handOverBySocket(request) ? Claim::handedOver : Claim::alone;
}

bool SingleInstance::handOverBySocket(const InstanceRequest& request) const {
    QLocalSocket socket;
    socket.connectToServer(socketPath_);
    if (!socket.waitForConnected(answerMilliseconds))
        return false;
    socket.write(request.text());
    // The other one closes the connection when it has read the line.
    return socket.waitForBytesWritten(answerMilliseconds) && socket.waitForDisconnected(answerMilliseconds);
}

void SingleInstance::readRequests() {
    while (auto* const socket = server_.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        const auto read = [this, socket] {
            if (!socket->canReadLine())
                return;
            const auto request = InstanceRequest::fromText(socket->readLine());
            socket->disconnectFromServer();
            Q_EMIT requested(request);
        };
        connect(socket, &QLocalSocket::readyRead, this, read);
        read();
    }
}

ApplicationInterface::ApplicationInterface(SingleInstance& instance) : instance_(instance) {}

void ApplicationInterface::request(InstanceRequest request, const QVariantMap& platformData) {
    const auto token = platformData.value(QStringLiteral("activation-token")).toString();
    if (!token.isEmpty())
        request.activationToken = token.toStdString();
    Q_EMIT instance_.requested(request);
}

void ApplicationInterface::Activate(const QVariantMap& platformData) {
    request({}, platformData);
}

void ApplicationInterface::Open(const QStringList& uris, const QVariantMap& platformData) {
    const auto path = uris.isEmpty() ? std::nullopt : pathOfFileUrl(uris.front().toStdString());
    request({.scanPath = path, .screen = std::nullopt}, platformData);
}

void ApplicationInterface::ActivateAction(const QString& action, const QVariantList& parameters,
                                          const QVariantMap& platformData) {
    if (action == QLatin1String("quit"))
        Q_EMIT instance_.quitRequested();
    else if (action == requestAction && !parameters.isEmpty())
        request(InstanceRequest::fromText(parameters.front().toString().toUtf8()), platformData);
}

} // namespace orbel

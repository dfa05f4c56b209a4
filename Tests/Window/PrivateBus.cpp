#include "PrivateBus.h"

#include <gtest/gtest.h>
#include <QFile>
#include <QTest>

namespace orbel::test {

PrivateBus::PrivateBus() {
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                   QStringLiteral("--print-address"), QStringLiteral("--address=") + address()});
    constexpr int patience = 10'000;
    EXPECT_TRUE(daemon_.waitForReadyRead(patience)) << "the bus did not start";
}

PrivateBus::~PrivateBus() {
    for (const auto& name : connections_)
        QDBusConnection::disconnectFromBus(name);
    daemon_.kill();
    daemon_.waitForFinished();
}

QString PrivateBus::address() const {
    return QStringLiteral("unix:path=") + QString::fromStdString(folder_.path("bus"));
}

QDBusConnection PrivateBus::connect() {
    const auto name = QString::fromStdString(folder_.path()) + QString::number(connections_.size());
    connections_ << name;
    return QDBusConnection::connectToBus(address(), name);
}

} // namespace orbel::test

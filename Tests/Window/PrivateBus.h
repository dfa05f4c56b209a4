#pragma once

#include "Support/TemporaryFolder.h"

#include <QDBusConnection>
#include <QProcess>

namespace orbel::test {

/// A session bus that belongs to one test.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();

    QString address() const;
    /// A connection of its own, as another program would have. The test keeps it no longer than the bus.
    QDBusConnection connect();

private:
    TemporaryFolder folder_;
    QProcess daemon_;
    QStringList connections_;
};

} // namespace orbel::test

#pragma once

#include "Services/LiveDiagnostics.h"

#include <memory>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

namespace orbel {

/// Notes how long the main thread keeps its events waiting: a timer that should fire every few milliseconds
/// tells by how much it was late, whatever kept it.
class StallWatch final : public QObject {
    Q_OBJECT

public:
    explicit StallWatch(std::shared_ptr<LiveDiagnostics> diagnostics);

private:
    void tick();

    std::shared_ptr<LiveDiagnostics> diagnostics_;
    QTimer timer_;
    QElapsedTimer sinceTick_;
};

} // namespace orbel

#pragma once

#include "Util/Check.h"

#include <cstdint>
#include <QObject>

namespace orbel {

/// The work under way that measures all of the disk or changes it: one at a time, among all flows. Used on
/// the main thread.
class Activity final : public QObject {
    Q_OBJECT

public:
    enum class Kind : std::uint8_t { none, scan, move, putBack };

    bool isIdle() const { return kind_ == Kind::none; }
    bool isMoving() const { return kind_ == Kind::move || kind_ == Kind::putBack; }

    /// Only when idle.
    void begin(Kind kind) {
        ORBEL_CHECK(isIdle(), "one thing at a time");
        set(kind);
    }
    void end() { set(Kind::none); }

Q_SIGNALS:
    void changed();

private:
    void set(Kind kind) {
        kind_ = kind;
        Q_EMIT changed();
    }

    Kind kind_ = Kind::none;
};

} // namespace orbel

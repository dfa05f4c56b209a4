#pragma once

#include "Alerts/LowDiskAlert.h"

#include <functional>

namespace orbel {

/// Tells the user something outside the window. Called on the main thread; nothing here waits.
class Notifier {
public:
    Notifier() = default;
    virtual ~Notifier() = default;
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;

    /// Whether notifications can be shown, asking the user first where the system wants that. `answer` is
    /// called once, later, on the main thread.
    virtual void requestPermission(std::function<void(bool)> answer) = 0;
    /// Shows the message; where notifications cannot be shown, marks the application's icon with "!".
    virtual void post(const LowDiskAlert::Message& message) = 0;
};

} // namespace orbel

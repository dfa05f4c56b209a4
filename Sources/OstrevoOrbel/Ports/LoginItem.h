#pragma once

#include <string>

namespace orbel {

/// Whether the desktop starts the application when the user logs in.
class LoginItem {
public:
    LoginItem() = default;
    virtual ~LoginItem() = default;
    LoginItem(const LoginItem&) = delete;
    LoginItem& operator=(const LoginItem&) = delete;

    virtual bool isEnabled() const = 0;
    /// False when that could not be written; it is then as it was.
    virtual bool setEnabled(bool enabled) = 0;
};

} // namespace orbel

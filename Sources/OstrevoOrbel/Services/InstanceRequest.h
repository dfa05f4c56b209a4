#pragma once

#include "Launch/LaunchOptions.h"
#include "Launch/Screen.h"

#include <optional>
#include <QByteArray>
#include <string>

namespace orbel {

/// What a second start asks of the application that runs already, besides coming to the front.
struct InstanceRequest {
    std::optional<std::string> scanPath;       ///< absolute
    std::optional<std::string> openScanPath{}; ///< of a file, absolute
    std::optional<Screen> screen{};
    std::optional<std::string> app{}; ///< name, id or path of the one to select on the screen Uninstall
    /// What the desktop gave the second start, and wants to see before the first one may take the focus.
    std::optional<std::string> activationToken{};

    /// Relative paths are taken from the current folder of this process, which the other one does not have;
    /// the token from its environment.
    static InstanceRequest of(const LaunchOptions& options);

    /// One line of JSON, and what it says; a text of another form asks for nothing.
    QByteArray text() const;
    static InstanceRequest fromText(const QByteArray& text);

    bool operator==(const InstanceRequest&) const = default;
};

} // namespace orbel

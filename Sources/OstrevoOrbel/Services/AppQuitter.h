#pragma once

#include "Platform/RunningPrograms.h"

#include <QDBusConnection>
#include <string>
#include <vector>

namespace orbel {

/// Asks a running application to quit, as its own menu would: it may ask the user to save, and may stay.
/// Nothing is ever forced, no signal is sent. Calls block until the applications answered, so they belong on
/// a thread of their own. Not instantiable.
struct AppQuitter {
    AppQuitter() = delete;

    /// The processes, other than this one, that run what lies at `bundlePath` or in that folder.
    static std::vector<platform::RunningProgram> runningApplications(const std::string& bundlePath);

    /// Asks each of them that can be asked on this bus: by the "quit" action of its menu, as KDE's programs
    /// are asked, or as a media player. True when at least one took the request.
    static bool quit(const std::string& bundlePath, const QDBusConnection& bus);
    static bool quit(const std::vector<platform::RunningProgram>& running, const QDBusConnection& bus);
};

} // namespace orbel

#pragma once

#include "AppModel/AppEnvironment.h"
#include "Platform/HomeTrash.h"
#include "Scan/TreeScanner.h"

#include <string>

namespace orbel::test {

/// Has a scene live in this folder, with a Trash of its own, and measure what really is there.
inline void useRealHome(AppEnvironment& environment, const std::string& home) {
    environment.home = home;
    environment.trashFolder = platform::homeTrash(home);
    environment.scan = [](const auto& root, const auto& token, const auto& progress, const auto& exclusions) {
        return TreeScanner::scan(root, std::nullopt, token, progress, exclusions);
    };
}

} // namespace orbel::test

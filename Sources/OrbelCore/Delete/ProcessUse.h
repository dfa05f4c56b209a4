#pragma once

#include "Platform/ProcessFiles.h"

#include <string>

namespace orbel {

/// A process that uses an item.
struct ProcessUse {
    int pid = 0;      ///< 0 when the system itself uses it
    std::string name; ///< as people know the program; valid UTF-8 on one line

    static ProcessUse of(const platform::ProcessInfo& process);

    bool operator==(const ProcessUse&) const = default;
};

} // namespace orbel

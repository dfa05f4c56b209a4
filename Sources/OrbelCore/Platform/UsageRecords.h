#pragma once

#include "Util/Iso8601.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace orbel::platform {

/// What the system remembers of the last use of a file.
struct UsageRecord {
    enum class Keeper : std::uint8_t {
        index,      ///< the desktop's own memory: the metadata index, the list of recently used files
        accessTime, ///< the file system's time of the last access
        birthTime   ///< the file system's time of the file's making, where it keeps no access times
    };

    Date date;
    Keeper keeper = Keeper::index;

    bool operator==(const UsageRecord&) const = default;
};

/// Tells when the file or package of a path was last used, as far as anything but its modification says so.
/// Never fails: what cannot be asked is not known. May be called by any thread.
using UsageLookup = std::function<std::optional<UsageRecord>(const std::string& path)>;

/// The look-up for the user of this home folder (its real path). What the system keeps as one list is read
/// here, once.
UsageLookup usageLookup(const std::string& home);

} // namespace orbel::platform

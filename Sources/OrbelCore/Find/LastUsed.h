#pragma once

#include "Util/Iso8601.h"
#include "Util/RawValue.h"

#include <array>
#include <cstdint>

namespace orbel {

/// When a file or package was last used, as well as that can be known.
struct LastUsed {
    enum class Source : std::uint8_t {
        lastOpened,  ///< something remembers when it was opened
        lastModified ///< nothing does, so the time of its last change or of its making stands in
    };
    /// What has kept the date, for the user to judge how far to trust it.
    enum class Record : std::uint8_t {
        usageIndex,       ///< the metadata index, the desktop's list of recently used files
        accessTime,       ///< the file system; anything that read the file counts, also a backup
        modificationTime, ///< the file system; reading does not count
        creationTime      ///< the file system, which keeps no access times; made later than it was changed
    };

    Date date;
    Source source = Source::lastModified;
    Record record = Record::modificationTime;
    bool isKnown = true; ///< false when nothing tells: the date means nothing then

    bool operator==(const LastUsed&) const = default;
};

template <>
struct RawValues<LastUsed::Source> {
    static constexpr std::array<std::string_view, 2> names{"lastOpened", "lastModified"};
};

template <>
struct RawValues<LastUsed::Record> {
    static constexpr std::array<std::string_view, 4> names{"usageIndex", "accessTime", "modificationTime",
                                                           "creationTime"};
};

} // namespace orbel

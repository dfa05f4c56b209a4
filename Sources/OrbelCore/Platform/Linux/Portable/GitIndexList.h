#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// A file as Git noted it when it last compared it.
struct GitIndexEntry {
    std::string path; ///< relative to the work folder
    std::int64_t modifiedSeconds = 0;
    std::uint32_t size = 0;   ///< the lower 32 bits of it
    bool isSubmodule = false; ///< a folder with a repository of its own
    bool isSparse = false;    ///< left out of the work folder on purpose

    bool operator==(const GitIndexEntry&) const = default;
};

/// Reads what `git ls-files --debug -t -s -z` prints. What follows something of another form is left out.
std::vector<GitIndexEntry> gitIndexEntries(std::string_view text);

} // namespace orbel::platform

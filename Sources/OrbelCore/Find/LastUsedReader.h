#pragma once

#include "Find/LastUsed.h"
#include "Platform/UsageRecords.h"

#include <string>

namespace orbel {

/// Finds out when files were last used. What the desktop keeps as one list is read once, at construction.
/// Immutable; may be used by any thread. Never fails.
class LastUsedReader {
public:
    /// Reads for the user of this home folder (its real path).
    explicit LastUsedReader(const std::string& home) : LastUsedReader(platform::usageLookup(home)) {}
    explicit LastUsedReader(platform::UsageLookup lookup) : lookup_(std::move(lookup)) {}

    /// `modified`: what stands in when nothing remembers a use of the file or package at `path`, a real path
    /// in visible form.
    LastUsed read(const std::string& path, Date modified) const;

private:
    platform::UsageLookup lookup_;
};

} // namespace orbel

#pragma once

#include "Safety/SafetyPolicy.h"

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// Where a refused item can be managed instead, and how to get there. A plain value.
struct ManageHint {
    std::string program{}; ///< what manages it: "Steam"; empty when only the words say so
    std::string words;     ///< what to show as the reason, one line
    std::string command{}; ///< for a terminal, one line with all names quoted; empty when there is none
    std::string address{}; ///< opens the program where the item is managed; empty when there is none

    /// What the text of an absolute path tells; absent when no program is known to manage what lies there.
    static std::optional<ManageHint> of(std::string_view path);

    /// The same, and of a game what its library says. Reads that unless it is out of reach.
    static std::optional<ManageHint> of(const std::string& path, SafetyPolicy::SeenFolders& seen);

    /// What to show as the reason for a refused path: a hint where one is known, else the refusal as it is.
    /// Without `seen`, the text of the path alone decides.
    static std::string explain(const std::string& path, const std::string& refusal, std::string_view homePath,
                               SafetyPolicy::SeenFolders* seen = nullptr);

    /// Whether a reason that explain() gave has these words.
    bool isShownAs(std::string_view reason) const;

    bool operator==(const ManageHint&) const = default;
};

} // namespace orbel

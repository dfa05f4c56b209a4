#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// The words of the notes on items, and what they mean for the space that a move frees. One item may have
/// several, joined with " · ". Not instantiable.
struct ItemNote {
    ItemNote() = delete;

    static constexpr std::string_view otherLinks = "Frees nothing while other links exist";
    static constexpr std::string_view sharedStorage = "May share storage; moving it may free less";

    /// `note` as it reads when `entries` in the item could not be read: what it said of them before is
    /// replaced, and for 0 left out.
    static std::optional<std::string> withUnreadable(const std::optional<std::string>& note,
                                                     std::uint64_t entries);

    /// Both notes, of which either may be absent.
    static std::optional<std::string> joined(const std::optional<std::string>& note,
                                             const std::optional<std::string>& other);

    /// Whether less than the item's bytes may become free, because something else keeps them.
    static bool saysLess(const std::optional<std::string>& note);
    /// Whether more may become free, because something in the item could not be read.
    static bool saysMore(const std::optional<std::string>& note);
};

} // namespace orbel

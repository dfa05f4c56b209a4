#pragma once

#include "Journal/HeldFolder.h"

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

namespace orbel {

class Barrier;

/// A home Trash as the freedesktop.org specification lays it out, opened and found to be the user's own.
struct TrashFolder {
    std::string path; ///< real
    HeldFolder files; ///< holds the items
    HeldFolder info;  ///< holds an info file for each

    /// Opens the Trash at this absolute path, after making what is missing of it, of its two folders and of
    /// the folders above it, for the user alone. The folders above it may be reached by links. The Trash and
    /// its two folders must be real folders that belong to the user and that not everybody may write to: the
    /// error says which one is not, for the user to read. What was made is added to `barrier`.
    static std::expected<TrashFolder, std::string> open(const std::string& path, Barrier& barrier);

    /// How many bytes a name in it may have, so that the name of its info file fits as well.
    std::size_t longestName() const;
};

/// What the name of an info file adds to that of its item.
inline constexpr std::string_view trashInfoSuffix = ".trashinfo";

} // namespace orbel

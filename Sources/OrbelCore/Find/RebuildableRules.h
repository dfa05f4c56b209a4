#pragma once

#include "Scan/FileTree.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orbel {

/// A folder that a program makes again, told by its name and by what lies beside it. In a name of a file "*"
/// at the beginning stands for anything.
struct RebuildableRule {
    std::string_view name; ///< of the folder
    /// One of these files lies beside it.
    std::array<std::string_view, 4> beside;
    std::string_view besideToo{}; ///< and this one
    std::string_view holds{};     ///< and this one lies in it
    /// There is nothing else in it; unless empty.
    std::span<const std::string_view> onlyHolds{};
    std::string_view program;

    /// For any name.
    static std::span<const RebuildableRule> all();

    /// "Cargo.toml beside it"; absent when the rule does not hold for the folder, which has its name.
    std::optional<std::string> evidence(const FileTree& tree, NodeIndex folder) const;
};

/// Whether the folder holds files of compiled Python and nothing else.
bool holdsOnlyCompiledPython(const FileTree& tree, NodeIndex folder);

/// Of the text of a CACHEDIR.TAG: the program that it names, empty when it names none; absent when the text
/// is not that of one.
std::optional<std::string> programOfCacheTag(std::string_view text);

/// The folder that a CMakeCache.txt says its project is in; absent when it says none.
std::optional<std::string> projectOfCMakeCache(std::string_view text);

} // namespace orbel

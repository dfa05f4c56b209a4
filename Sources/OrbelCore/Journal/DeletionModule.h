#pragma once

#include "Util/RawValue.h"

#include <array>
#include <cstdint>

namespace orbel {

/// The list an item was proposed by.
enum class DeletionModule : std::uint8_t {
    map,
    largeOld,
    duplicates,
    uninstall,
    emptyFolders,
    brokenShortcuts,
    rebuildable
};

inline constexpr std::array<DeletionModule, 7> allDeletionModules{
    DeletionModule::map,        DeletionModule::largeOld,     DeletionModule::duplicates,
    DeletionModule::uninstall,  DeletionModule::emptyFolders, DeletionModule::brokenShortcuts,
    DeletionModule::rebuildable};

template <>
struct RawValues<DeletionModule> {
    static constexpr std::array<std::string_view, 7> names{
        "map", "largeOld", "duplicates", "uninstall", "emptyFolders", "brokenShortcuts", "rebuildable"};
};

} // namespace orbel

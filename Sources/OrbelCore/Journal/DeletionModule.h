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
    brokenShortcuts
};

inline constexpr std::array<DeletionModule, 6> allDeletionModules{
    DeletionModule::map,       DeletionModule::largeOld,     DeletionModule::duplicates,
    DeletionModule::uninstall, DeletionModule::emptyFolders, DeletionModule::brokenShortcuts};

template <>
struct RawValues<DeletionModule> {
    static constexpr std::array<std::string_view, 6> names{"map",       "largeOld",     "duplicates",
                                                           "uninstall", "emptyFolders", "brokenShortcuts"};
};

} // namespace orbel

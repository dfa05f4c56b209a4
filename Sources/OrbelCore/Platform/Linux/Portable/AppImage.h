#pragma once

#include "Platform/Linux/Portable/DesktopEntry.h"
#include "Platform/Linux/Portable/PackageOwners.h"

#include <optional>
#include <string>
#include <string_view>

namespace orbel::platform {

/// Whether the file is an AppImage: a regular ELF file, no link, that says so in its header. Never blocks.
bool isAppImage(const std::string& path);

/// What the name of an AppImage's file says.
struct AppImageName {
    std::string name; ///< without the ending, the version and the kind of machine that it is for
    std::optional<std::string> version{};

    bool operator==(const AppImageName&) const = default;
};

/// "Tool" and "3.1" of "Tool-3.1-x86_64.AppImage". A name without the ending stays as it is.
AppImageName appImageName(std::string_view fileName);

/// The launcher that an AppImage carries.
struct EmbeddedLauncher {
    std::string id; ///< its desktop id, without ".desktop"
    DesktopEntry entry;
};

/// Absent when it has none that can be read: where `unsquashfs` is not installed, and for AppImages of the
/// first kind, which are no squashfs. Runs that program with `run`; nothing of the AppImage itself runs.
std::optional<EmbeddedLauncher> embeddedLauncher(const std::string& path, const RunProgram& run);

} // namespace orbel::platform

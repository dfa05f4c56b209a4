#pragma once

#include "Platform/InstalledApp.h"
#include "Platform/Linux/Portable/ExecResolver.h"
#include "Platform/Linux/Portable/PackageOwners.h"

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace orbel::platform {

/// What the applications of a Linux system are looked for with.
struct LinuxApplicationSearch {
    std::string home; ///< real path
    /// In those called "applications" there are launchers, also in folders below; in others, AppImages.
    std::vector<std::string> folders;
    std::vector<std::string> programFolders; ///< as Places::programFolders
    ExecResolver resolver;
    std::function<std::map<std::string, PackageOwner>(const std::set<std::string>& paths)> owners;
    std::function<bool(const std::string& path)> isWritable;
    std::uint32_t user = 0; ///< whose home it is
    RunProgram run{};       ///< looks into AppImages; empty: their names have to do
};

/// The folders of launchers and of AppImages, in order of precedence. `dataHome`, `dataFolders`:
/// $XDG_DATA_HOME and $XDG_DATA_DIRS, which may be empty.
std::vector<std::string> linuxApplicationFolders(const std::string& home, std::string_view dataHome,
                                                 std::string_view dataFolders,
                                                 std::span<const std::string> programFileFolders);

/// Launchers of one application are one. Launchers that start nothing are left out. Reads the disk; nothing
/// in any file makes it fail.
std::vector<InstalledApp> linuxApplications(const LinuxApplicationSearch& search);

} // namespace orbel::platform

#pragma once

#include "Safety/FolderShape.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace orbel {

/// The protected shape of each folder that was looked at, null where it has none.
using KnownShapes = std::unordered_map<std::string, const FolderShape*>;

/// What is protected wherever it lies, because only a store of keys, passwords, wallets, mail, photos or
/// backups holds it: by its own name, or as a part of a folder of a certain shape. No list of places ever
/// ends; this catches what they miss. Not instantiable.
///
/// Inside build output and caches of packages the same names are test data and protect nothing.
struct ProtectedContent {
    ProtectedContent() = delete;

    /// What a file or folder of this name is, as in "Protected: {meaning}"; absent for any other name. Fast
    /// enough to be asked about every name of a scan.
    static std::optional<std::string_view> meaningOf(std::string_view name);

    /// Whether a path lies in build output or in a cache of packages. Any part of a path will do.
    static bool isTestData(std::string_view path);

    /// Why `real`, a real path, is protected by what it is or is a part of; absent when it is not, and when
    /// it lies outside the home. Looks at names in the folders above it, and in itself when it is one, but
    /// for those that are known already.
    static std::optional<std::string> reason(const std::string& real, bool isDirectory,
                                             const std::string& homePath, KnownShapes& known);
};

} // namespace orbel

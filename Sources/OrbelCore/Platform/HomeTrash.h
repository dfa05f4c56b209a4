#pragma once

#include <string>

namespace orbel::platform {

/// The Trash of the user whose home folder this is, unresolved, whether it exists or not:
/// `$XDG_DATA_HOME/Trash`, or ".local/share/Trash" in the home when the variable is not an absolute path;
/// ".Trash" in the home on macOS.
std::string homeTrash(const std::string& home);

/// The folder of that Trash in which items lie: its "files", or the Trash itself on macOS.
std::string trashedItemsFolder(const std::string& trash);

} // namespace orbel::platform

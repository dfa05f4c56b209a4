#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbel::platform {

/// The picture folder that the text of a user-dirs.dirs file names (XDG_PICTURES_DIR="$HOME/…" or an absolute
/// path); the last assignment wins. Absent when it names none, or the home folder itself, which stands for
/// "none" there.
std::optional<std::string> pictureFolderIn(std::string_view userDirs, const std::string& home);

} // namespace orbel::platform

#pragma once

#include <map>
#include <string>
#include <string_view>

namespace orbel::platform {

/// The user's folders that the text of a user-dirs.dirs file names, by what they are for: "PICTURES" for
/// XDG_PICTURES_DIR="$HOME/…" or an absolute path; the last assignment wins. Left out is what is the home
/// folder itself, which stands for "none" there.
std::map<std::string, std::string> userFoldersIn(std::string_view userDirs, const std::string& home);

} // namespace orbel::platform

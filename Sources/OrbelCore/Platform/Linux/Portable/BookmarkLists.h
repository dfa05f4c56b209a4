#pragma once

#include "Platform/Bookmarks.h"

#include <string>
#include <string_view>
#include <vector>

namespace orbel::platform {

/// The targets on this computer of a list with one bookmark in each line: its address, then perhaps a blank
/// and its name. Lines of another form are passed over, and so is what an earlier line named.
std::vector<std::string> bookmarkLines(std::string_view text);

/// The bookmarks of GTK's and KDE's file managers. The folders are those of the environment; one that is
/// empty or not absolute means the usual one.
std::vector<Bookmark> bookmarksOf(const std::string& home, std::string_view configHome,
                                  std::string_view dataHome);

} // namespace orbel::platform

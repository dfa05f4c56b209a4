#pragma once

#include <functional>
#include <string>

namespace orbel::platform {

/// Gives the file of an icon that an application names, about `size` pixels wide where there are several;
/// empty when there is none. Looks at the disk, so it is not for a thread that must not wait.
using IconFinder = std::function<std::string(const std::string& icon, int size)>;

/// Looks in the desktop's icon themes, `theme` first: its name as the desktop gives it, or empty.
/// `home`: the user's.
IconFinder iconFinder(const std::string& home, const std::string& theme);

} // namespace orbel::platform

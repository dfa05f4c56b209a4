#include "Platform/Linux/Portable/AppFiles.h"

#include "Platform/FileStatus.h"
#include "Util/PathText.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;

bool isUsersFile(const std::string& path, std::uint32_t user) {
    const auto status = fileStatus(path);
    return status && status->type == FileType::regular && status->owner == user;
}

/// Commands in the user's folder of them that lead into the application.
std::vector<std::string> linksInto(const std::string& path, const std::string& home, PathResolver& paths) {
    std::error_code error;
    fs::directory_iterator entries(joinedPath(home, ".local/bin"), error);
    std::vector<std::string> links;
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        std::error_code gone;
        const auto entry = entries->path().string();
        if (!entries->is_symlink(gone))
            continue;
        if (const auto target = paths.resolve(entry); target.isFound() && isPathInside(target.path, path))
            links.push_back(entry);
    }
    std::ranges::sort(links);
    return links;
}

/// The files of the icon that a launcher names, as far as they are in the user's folders of icons.
std::vector<std::string> iconsNamed(const std::string& icon, const std::string& icons, std::uint32_t user) {
    if (icon.starts_with('/'))
        return isPathInside(icon, icons) && isUsersFile(icon, user) ? std::vector{icon}
                                                                    : std::vector<std::string>();
    std::vector<std::string> found;
    if (icon.empty() || icon.contains('/'))
        return found;
    std::vector<std::string> folders{icons};
    std::error_code error;
    fs::directory_iterator sizes(joinedPath(icons, "hicolor"), error);
    for (; !error && sizes != fs::directory_iterator(); sizes.increment(error))
        folders.push_back((sizes->path() / "apps").string());
    std::ranges::sort(folders);
    for (const auto& folder : folders)
        for (const auto* ending : {".png", ".svg", ".xpm"})
            if (auto path = joinedPath(folder, icon + ending); isUsersFile(path, user))
                found.push_back(std::move(path));
    return found;
}

} // namespace

std::vector<std::string> appFiles(const std::string& path, const LauncherFile& launcher, bool hasOwnIcon,
                                  const std::string& home, std::uint32_t user, PathResolver paths) {
    const auto data = joinedPath(home, ".local/share");
    std::vector<std::string> files;
    if (parentPath(launcher.path) == joinedPath(data, "applications") && isUsersFile(launcher.path, user))
        files.push_back(launcher.path);
    std::ranges::move(linksInto(path, home, paths), std::back_inserter(files));
    if (hasOwnIcon)
        std::ranges::move(
            iconsNamed(launcher.entry.text("Icon").value_or(""), joinedPath(data, "icons"), user),
            std::back_inserter(files));
    return files;
}

} // namespace orbel::platform

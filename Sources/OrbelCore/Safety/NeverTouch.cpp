#include "Safety/NeverTouch.h"

#include "Safety/RealPath.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

namespace {

constexpr std::array<std::string_view, 23> homeEntries{".claude/projects",
                                                       ".ssh",
                                                       ".gnupg",
                                                       ".Trash",
                                                       "Pictures",
                                                       "Library/Keychains",
                                                       "Library/Mail",
                                                       "Library/Messages",
                                                       "Library/Mobile Documents",
                                                       "Library/CloudStorage",
                                                       "Library/Calendars",
                                                       "Library/Accounts",
                                                       "Library/Application Support/MobileSync/Backup",
                                                       "Library/Application Support/com.apple.TCC",
                                                       "Library/Application Support/AddressBook",
                                                       "Library/Application Support/Ostrevo Orbel",
                                                       "Library/Safari",
                                                       "Library/Containers/com.apple.Safari",
                                                       "Library/Application Support/Google/Chrome",
                                                       "Library/Application Support/Arc",
                                                       "Library/Application Support/Firefox",
                                                       "Library/Application Support/BraveSoftware",
                                                       "Library/Application Support/Microsoft Edge"};

} // namespace

std::vector<std::string> NeverTouch::roots(const std::string& home) {
    const auto realHome = RealPath::resolve(home).value_or(standardizedPath(home));
    std::vector<std::string> roots;
    roots.reserve(homeEntries.size());
    for (const auto entry : homeEntries) {
        auto joined = joinedPath(realHome, entry);
        roots.push_back(RealPath::resolve(joined).value_or(joined));
    }
    return roots;
}

bool NeverTouch::hasProtectedComponent(std::string_view path) {
    return std::ranges::any_of(pathComponents(path), [](std::string_view component) {
        return std::ranges::any_of(protectedComponentSuffixes, [component](std::string_view suffix) {
            return component.ends_with(suffix);
        });
    });
}

bool NeverTouch::isAppleOwned(std::string_view path, std::string_view homePath) {
    return std::ranges::any_of(appleOwnedParents, [&](std::string_view parent) {
        const auto prefix = joinedPath(homePath, parent) + "/";
        if (!path.starts_with(prefix))
            return false;
        const auto rest = path.substr(prefix.size());
        return rest.starts_with("com.apple.") || rest.starts_with("group.com.apple.");
    });
}

} // namespace orbel

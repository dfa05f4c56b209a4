#include "Safety/NeverTouch.h"

#include "Safety/RealPath.h"
#include "Util/PathText.h"

#include <algorithm>
#include <utility>

namespace orbel {

namespace {

constexpr auto homeEntries = std::to_array<std::string_view>({".claude/projects",
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
                                                              "Library/Application Support/Microsoft Edge"});

} // namespace

std::vector<std::string> NeverTouch::roots(const std::string& home, PathResolver resolver) {
    const auto realHome = RealPath::resolve(home).value_or(standardizedPath(home));
    std::vector<std::string> roots;
    roots.reserve(homeEntries.size());
    for (const auto entry : homeEntries) {
        auto joined = joinedPath(realHome, entry);
        auto resolved = resolver.resolve(joined);
        roots.push_back(resolved.isFound() ? std::move(resolved.path) : std::move(joined));
    }
    return roots;
}

bool NeverTouch::isProtectedName(std::string_view name) {
    // Asked about every name of a scan: most are told apart by their last byte.
    static constexpr auto endsASuffix = [] {
        std::array<bool, 256> ends{};
        for (const auto suffix : protectedComponentSuffixes)
            ends[static_cast<unsigned char>(suffix.back())] = true;
        return ends;
    }();
    return !name.empty() && endsASuffix[static_cast<unsigned char>(name.back())]
           && std::ranges::any_of(protectedComponentSuffixes,
                                  [name](std::string_view suffix) { return name.ends_with(suffix); });
}

bool NeverTouch::hasProtectedComponent(std::string_view path) {
    return std::ranges::any_of(pathComponents(path), isProtectedName);
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

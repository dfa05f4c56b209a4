#include "Find/AppInventory.h"

#include "Platform/Applications.h"
#include "Platform/Home.h"
#include "Safety/PathCanonicalizer.h"

#include <algorithm>
#include <cctype>
#include <tuple>

#include <unistd.h>

namespace orbel {

namespace {

std::string realHome() {
    const auto home = platform::homeFolder();
    return PathCanonicalizer::shared().canonical(home).value_or(home);
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool mayWrite(const std::string& path) {
    return ::access(path.c_str(), W_OK) == 0;
}

} // namespace

std::vector<std::string> AppInventory::defaultFolders() {
    return platform::applicationSearchFolders(realHome());
}

std::vector<InstalledApp> AppInventory::scan(std::span<const std::string> folders,
                                             const std::function<bool(const std::string&)>& isWritable) {
    auto apps = platform::installedApplications(realHome(), folders, isWritable ? isWritable : mayWrite);
    const auto order = [](const InstalledApp& app) {
        return std::tuple(app.isHidden, app.isHidden ? std::string() : lowerCase(app.name), app.path);
    };
    std::ranges::sort(apps, {}, order);
    return apps;
}

} // namespace orbel

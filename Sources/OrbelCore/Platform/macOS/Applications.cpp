#include "Platform/Applications.h"

#include "Platform/macOS/InfoPlist.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;
using Status = InstalledApp::Status;
using IsWritable = std::function<bool(const std::string&)>;

constexpr std::string_view ending = ".app";

/// Sets what may become of the bundle.
void decide(InstalledApp& app, bool hasPlist, const IsWritable& isWritable) {
    if (!hasPlist) {
        app.reason = "Not a Mac app (remove it in Finder)";
    } else if (app.bundleID && app.bundleID->starts_with("com.apple.")) {
        app.status = Status::system;
        app.reason = "A part of the system";
    } else if (!isWritable(app.path) || !isWritable(std::string(parentPath(app.path)))) {
        app.status = Status::needsAdmin;
        app.reason = "Needs admin: remove it in Finder";
    } else {
        app.status = Status::removable;
    }
}

InstalledApp bundleAt(const std::string& path, const IsWritable& isWritable) {
    const auto plist = readInfoPlist(joinedPath(path, "Contents/Info.plist"));
    auto name = lossyUtf8(lastPathComponent(path));
    name.resize(name.size() - ending.size());
    InstalledApp app{.path = path, .name = name, .source = "Application"};
    app.executables = {joinedPath(path, "Contents")};
    app.names = {name};
    if (plist) {
        if (!plist->identifier.empty()) {
            app.bundleID = plist->identifier;
            app.identifiers = {plist->identifier};
        }
        if (!plist->version.empty())
            app.version = plist->version;
        if (!plist->name.empty() && plist->name != name)
            app.names.push_back(plist->name);
    }
    decide(app, plist.has_value(), isWritable);
    return app;
}

} // namespace

std::vector<std::string> applicationSearchFolders(const std::string& home) {
    return {"/Applications", joinedPath(home, "Applications")};
}

std::vector<InstalledApp> installedApplications(const std::string& /*home*/,
                                                std::span<const std::string> folders,
                                                const IsWritable& isWritable) {
    std::vector<InstalledApp> apps;
    for (const auto& folder : folders) {
        std::error_code error;
        fs::recursive_directory_iterator entries(folder, fs::directory_options::skip_permission_denied,
                                                 error);
        for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error)) {
            const auto path = entries->path().string();
            std::error_code unreadable;
            const bool isFolder = entries->is_directory(unreadable) && !entries->is_symlink(unreadable);
            const bool isBundle = isFolder && path.ends_with(ending);
            if (isBundle)
                apps.push_back(bundleAt(path, isWritable));
            // One level of folders between, such as Utilities; never a bundle inside a bundle.
            if (isBundle || entries.depth() >= 1)
                entries.disable_recursion_pending();
        }
    }
    return apps;
}

std::string programNamed(const std::string& /*name*/, const std::string& /*home*/) {
    return {};
}

} // namespace orbel::platform

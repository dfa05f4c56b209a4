#include "Find/SeenPackages.h"

#include "Find/InstalledNames.h"
#include "Journal/PrivateFile.h"
#include "Platform/ReplaceFile.h"
#include "Util/JsonText.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/StrictJson.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include <sys/stat.h>

namespace orbel {

using nlohmann::json;

namespace {

constexpr std::uint64_t formatVersion = 1;
constexpr off_t largestFile = 4 * 1024 * 1024;
/// More than a system has; each takes some hundred bytes.
constexpr std::size_t mostApps = 10'000;

std::string dayOf(Date date) {
    constexpr std::size_t daySize = 10;
    return iso8601(date).substr(0, daySize);
}

/// Throws for what is no such file.
SeenPackages::Content contentIn(const json& file) {
    if (unsignedAt(file, "format") != formatVersion)
        rejectMember(file, "format");
    SeenPackages::Content content;
    for (const auto& row : file.at("apps"))
        content.apps.push_back({.manager = textAt(row, "manager"),
                                .package = textAt(row, "package"),
                                .id = textAt(row, "id"),
                                .name = textAt(row, "name"),
                                .day = textAt(row, "day")});
    for (const auto& key : file.at("dismissed"))
        content.dismissed.insert(key.get<std::string>());
    return content;
}

} // namespace

void SeenPackages::Content::see(std::span<const InstalledApp> installed, Date now) {
    for (const auto& app : installed) {
        if (app.manager.empty() || app.package.empty() || app.isHidden || !isValidUtf8(app.package))
            continue;
        App seen{.manager = app.manager,
                 .package = app.package,
                 .id = app.bundleID.value_or(app.package),
                 .name = app.name,
                 .day = dayOf(now)};
        const auto known = std::ranges::find_if(apps, [&](const App& each) {
            return each.manager == seen.manager && each.package == seen.package;
        });
        if (known != apps.end())
            *known = std::move(seen);
        else if (apps.size() < mostApps)
            apps.push_back(std::move(seen));
    }
}

std::vector<SeenPackages::App> SeenPackages::Content::gone(const InstalledNames& installed) const {
    std::vector<App> gone;
    std::ranges::copy_if(apps, std::back_inserter(gone), [&](const App& app) {
        return installed.isAnswering(app.manager) && !installed.hasPackage(app.manager, app.package);
    });
    return gone;
}

std::string SeenPackages::defaultPath(const std::string& applicationSupportFolder) {
    return joinedPath(applicationSupportFolder, "Ostrevo Orbel/installed.json");
}

SeenPackages::Reading SeenPackages::read() const {
    const auto folder = path_.empty() ? FileDescriptor() : openExistingFolder(std::string(parentPath(path_)));
    if (!folder)
        return {};
    const auto failed = [](std::string words) { return Reading{.content = {}, .failure = std::move(words)}; };
    const auto opened = PrivateFile::open(folder.get(), std::string(lastPathComponent(path_)),
                                          PrivateFile::Access::read, path_);
    if (!opened) {
        struct stat missing {};
        if (::lstat(path_.c_str(), &missing) != 0 && errno == ENOENT)
            return {};
        return failed(opened.error().words);
    }
    struct stat status {};
    const bool isSmall = ::fstat(opened->file.get(), &status) == 0 && status.st_size <= largestFile;
    const auto text = isSmall ? readFile(opened->file.get()) : std::nullopt;
    const auto damaged = path_ + ": is damaged, so what was installed before is not known";
    try {
        return text ? Reading{.content = contentIn(json::parse(*text))} : failed(damaged);
    } catch (const json::exception&) {
        return failed(damaged);
    }
}

std::expected<void, std::string> SeenPackages::dismiss(const std::string& key) const {
    auto content = read().content;
    content.dismissed.insert(key);
    return write(content);
}

std::expected<void, std::string> SeenPackages::write(const Content& content) const {
    if (path_.empty())
        return {};
    json rows = json::array();
    for (const auto& app : content.apps)
        rows.push_back({{"manager", app.manager},
                        {"package", app.package},
                        {"id", app.id},
                        {"name", app.name},
                        {"day", app.day}});
    const json file{{"format", formatVersion}, {"apps", std::move(rows)}, {"dismissed", content.dismissed}};
    if (const auto folder = openFolder(std::string(parentPath(path_))); !folder)
        return std::unexpected(folder.error().words);
    const auto written = replaceFile(path_, prettyJson(file) + "\n", FileAccess::ownerOnly);
    return written ? written : std::unexpected(path_ + ": " + written.error());
}

} // namespace orbel

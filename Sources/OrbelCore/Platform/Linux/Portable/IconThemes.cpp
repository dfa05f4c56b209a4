#include "Platform/Linux/Portable/IconThemes.h"

#include "Platform/Linux/Portable/DesktopEntry.h"
#include "Util/ParseNumber.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view sharedTheme = "hicolor";
constexpr std::string_view group = "Icon Theme";
constexpr std::size_t mostThemes = 16;
constexpr std::uint64_t mostDescriptionBytes = 4 * 1024 * 1024;

bool isFile(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

bool isFolder(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

std::vector<std::string> listed(const std::string& text) {
    std::vector<std::string> words;
    std::string_view rest = text;
    while (!rest.empty()) {
        const auto end = std::min(rest.find(','), rest.size());
        if (end > 0)
            words.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return words;
}

/// Whether a name that a file gave stays below the folder that it is looked for in.
bool staysBelow(std::string_view name) {
    return !name.empty() && !name.starts_with('/') && name != "." && name != ".." && !name.starts_with("../")
           && !name.contains("/../") && !name.ends_with("/..") && !name.contains('\0');
}

std::string fileNamed(const std::string& folder, const std::string& name) {
    for (const std::string_view ending : {".png", ".svg", ".xpm"})
        if (auto path = joinedPath(folder, name + std::string(ending)); isFile(path))
            return path;
    return {};
}

} // namespace

std::vector<std::string> iconFolders(const std::string& home, std::string_view dataHome,
                                     std::string_view dataFolders) {
    std::vector<std::string> folders{joinedPath(home, ".icons")};
    const auto add = [&](std::string_view data) {
        auto folder = joinedPath(data, "icons");
        if (data.starts_with('/') && std::ranges::find(folders, folder) == folders.end())
            folders.push_back(std::move(folder));
    };
    add(dataHome);
    add(joinedPath(home, ".local/share"));
    add(joinedPath(home, ".local/share/flatpak/exports/share"));
    add("/var/lib/flatpak/exports/share");
    if (dataFolders.empty())
        dataFolders = "/usr/local/share:/usr/share";
    while (!dataFolders.empty()) {
        const auto end = std::min(dataFolders.find(':'), dataFolders.size());
        add(dataFolders.substr(0, end));
        dataFolders.remove_prefix(std::min(end + 1, dataFolders.size()));
    }
    folders.emplace_back("/usr/share/pixmaps");
    return folders;
}

IconThemes::IconThemes(std::vector<std::string> folders, const std::string& theme)
    : folders_(std::move(folders)) {
    std::vector<std::string> known;
    add(theme, known);
    add(std::string(sharedTheme), known);
}

/// The theme, then those that it inherits from. The shared one comes last, even where a theme names it.
void IconThemes::add(const std::string& name, std::vector<std::string>& known) {
    if (!staysBelow(name) || name.contains('/') || known.size() >= mostThemes
        || std::ranges::find(known, name) != known.end())
        return;
    known.push_back(name);
    std::optional<DesktopEntry> description;
    for (const auto& folder : folders_) {
        const auto text =
            readRegularFile(joinedPath(joinedPath(folder, name), "index.theme"), mostDescriptionBytes);
        if (text) {
            description = DesktopEntry::parse(*text);
            break;
        }
    }
    if (!description)
        return;
    const auto number = [&](std::string_view key, const std::string& subfolder) {
        const auto value = parseInteger(description->text(key, subfolder).value_or(""));
        constexpr std::int64_t most = 4096;
        return value && *value > 0 && *value <= most ? std::optional(static_cast<int>(*value)) : std::nullopt;
    };
    Theme theme;
    for (const auto& subfolder : listed(description->text("Directories", group).value_or(""))) {
        const auto size = number("Size", subfolder);
        const auto context = description->text("Context", subfolder).value_or("Applications");
        if (!staysBelow(subfolder) || !size || context != "Applications"
            || number("Scale", subfolder).value_or(1) != 1)
            continue;
        const auto type = description->text("Type", subfolder).value_or("Threshold");
        const int slack = type == "Threshold" ? number("Threshold", subfolder).value_or(2) : 0;
        const bool isScalable = type == "Scalable";
        const Folder found{
            .path = {},
            .smallest = isScalable ? number("MinSize", subfolder).value_or(*size) : *size - slack,
            .largest = isScalable ? number("MaxSize", subfolder).value_or(*size) : *size + slack};
        for (const auto& folder : folders_)
            if (auto path = joinedPath(joinedPath(folder, name), subfolder); isFolder(path))
                theme.push_back({std::move(path), found.smallest, found.largest});
    }
    themes_.push_back(std::move(theme));
    for (const auto& below : listed(description->text("Inherits", group).value_or("")))
        if (below != sharedTheme)
            add(below, known);
}

std::string IconThemes::file(std::string_view icon, int size) const {
    if (icon.starts_with('/'))
        return isFile(std::string(icon)) ? std::string(icon) : std::string();
    // Some name the file where the name of the icon is asked for.
    for (const std::string_view ending : {".png", ".svg", ".xpm"})
        if (icon.ends_with(ending))
            icon.remove_suffix(ending.size());
    if (!staysBelow(icon) || icon.contains('/'))
        return {};
    const std::string name(icon);
    for (const auto& theme : themes_) {
        std::string nearest;
        int distance = 0;
        for (const auto& folder : theme) {
            const int away = std::max({folder.smallest - size, size - folder.largest, 0});
            if (!nearest.empty() && away >= distance)
                continue;
            if (auto path = fileNamed(folder.path, name); !path.empty()) {
                nearest = std::move(path);
                distance = away;
            }
        }
        if (!nearest.empty())
            return nearest;
    }
    for (const auto& folder : folders_)
        if (auto path = fileNamed(folder, name); !path.empty())
            return path;
    return {};
}

} // namespace orbel::platform

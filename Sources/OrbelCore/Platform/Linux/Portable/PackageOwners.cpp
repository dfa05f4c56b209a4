#include "Platform/Linux/Portable/PackageOwners.h"

#include "Util/ParseNumber.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;
using Owners = std::map<std::string, PackageOwner>;
/// Every name under which a database may list a path, and the path.
using Wanted = std::unordered_map<std::string_view, std::string_view>;

constexpr std::uint64_t mostListBytes = 64 * 1024 * 1024;

void forEachLine(std::string_view text, const auto& use) {
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        use(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

bool isFolder(const std::string& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

/// The value of "Key: value"; empty when the line has another key.
std::string_view valueOf(std::string_view line, std::string_view key) {
    if (!line.starts_with(key) || !line.substr(key.size()).starts_with(": "))
        return {};
    return line.substr(key.size() + 2);
}

/// A package as its list of files is called: with its architecture where several may be installed.
struct DpkgStanza {
    std::string_view name, architecture, version;
    bool isEssential = false;
    bool isInstalled = false;
    std::optional<std::uint64_t> bytes;
};

/// What a package says that it takes; absent when that is no number.
std::optional<std::uint64_t> sizeOf(std::string_view text, std::uint64_t unit) {
    const auto count = parseInteger(text);
    constexpr std::int64_t most = std::int64_t{1} << 50;
    if (!count || *count < 0 || *count > most)
        return std::nullopt;
    return static_cast<std::uint64_t>(*count) * unit;
}

void forEachStanza(std::string_view status, const auto& use) {
    DpkgStanza stanza;
    const auto finish = [&] {
        if (stanza.isInstalled)
            use(stanza);
        stanza = {};
    };
    forEachLine(status, [&](std::string_view line) {
        if (line.empty())
            finish();
        else if (const auto name = valueOf(line, "Package"); !name.empty())
            stanza.name = name;
        else if (const auto architecture = valueOf(line, "Architecture"); !architecture.empty())
            stanza.architecture = architecture;
        else if (const auto version = valueOf(line, "Version"); !version.empty())
            stanza.version = version;
        else if (const auto size = valueOf(line, "Installed-Size"); !size.empty())
            stanza.bytes = sizeOf(size, 1024);
        else if (const auto state = valueOf(line, "Status"); !state.empty())
            stanza.isInstalled = state.ends_with(" installed");
        else if (const auto priority = valueOf(line, "Priority"); !priority.empty())
            stanza.isEssential |= priority == "required" || priority == "important";
        else if (line == "Essential: yes" || line == "Protected: yes" || line == "Important: yes")
            stanza.isEssential = true;
    });
    finish();
}

void addDpkgOwners(const Wanted& wanted, const std::string& folder, Owners& owners) {
    std::multimap<std::string, std::string_view, std::less<>> found; // by the name of the list
    std::error_code error;
    fs::directory_iterator lists(joinedPath(folder, "info"), error);
    for (; !error && lists != fs::directory_iterator(); lists.increment(error)) {
        if (lists->path().extension() != ".list")
            continue;
        const auto content = readRegularFile(lists->path().string(), mostListBytes);
        forEachLine(content ? std::string_view(*content) : std::string_view(), [&](std::string_view line) {
            if (const auto path = wanted.find(line); path != wanted.end())
                found.emplace(lists->path().stem().string(), path->second);
        });
    }
    if (found.empty())
        return;
    const auto status = readRegularFile(joinedPath(folder, "status"), mostListBytes);
    forEachStanza(status ? std::string_view(*status) : std::string_view(), [&](const DpkgStanza& stanza) {
        const std::string name(stanza.name);
        for (const auto& list : {name, name + ":" + std::string(stanza.architecture)}) {
            const auto [first, last] = found.equal_range(list);
            for (auto entry = first; entry != last; ++entry)
                owners.emplace(entry->second, PackageOwner{.manager = PackageOwner::Manager::dpkg,
                                                           .name = list,
                                                           .version = std::string(stanza.version),
                                                           .isEssential = stanza.isEssential,
                                                           .bytes = stanza.bytes});
        }
    });
}

std::optional<std::uint64_t> pacmanSize(const std::string& description) {
    const auto content = readRegularFile(description, mostListBytes);
    std::optional<std::uint64_t> size;
    bool isNext = false;
    forEachLine(content ? std::string_view(*content) : std::string_view(), [&](std::string_view line) {
        if (isNext)
            size = sizeOf(line, 1);
        isNext = line == "%SIZE%";
    });
    return size;
}

/// Where in NAME-VERSION-RELEASE, which pacman calls a package's folder, the version and its dash begin.
std::size_t pacmanVersionAt(std::string_view folder) {
    const auto release = folder.rfind('-');
    return release == std::string_view::npos || release == 0 ? std::string_view::npos
                                                             : folder.rfind('-', release - 1);
}

void addPacmanOwners(const Wanted& wanted, const std::string& folder, Owners& owners) {
    std::error_code error;
    fs::directory_iterator packages(folder, error);
    for (; !error && packages != fs::directory_iterator(); packages.increment(error)) {
        const auto content = readRegularFile((packages->path() / "files").string(), mostListBytes);
        std::vector<std::string_view> found;
        forEachLine(content ? std::string_view(*content) : std::string_view(), [&](std::string_view line) {
            if (const auto path = wanted.find("/" + std::string(line)); path != wanted.end())
                found.push_back(path->second);
        });
        if (found.empty())
            continue;
        const auto called = packages->path().filename().string();
        const auto version = pacmanVersionAt(called);
        if (version == std::string::npos)
            continue;
        const auto size = pacmanSize((packages->path() / "desc").string());
        for (const auto path : found)
            owners.emplace(path, PackageOwner{.manager = PackageOwner::Manager::pacman,
                                              .name = called.substr(0, version),
                                              .version = called.substr(version + 1),
                                              .bytes = size});
    }
}

void addRpmOwners(const Wanted& wanted, const std::set<std::string>& paths, const RunProgram& run,
                  Owners& owners) {
    // Every owner lists all its files, so that each answer says which question it belongs to.
    std::vector<std::string> words{"rpm", "-qf", "--qf",
                                   "[%{=NAME}\t%{=VERSION}-%{=RELEASE}\t%{FILENAMES}\n]", "--"};
    words.insert(words.end(), paths.begin(), paths.end());
    const auto output = run(words);
    forEachLine(output ? std::string_view(*output) : std::string_view(), [&](std::string_view line) {
        const auto first = line.find('\t');
        const auto second = first == std::string_view::npos ? first : line.find('\t', first + 1);
        if (second == std::string_view::npos)
            return; // words about a file that has no owner
        if (const auto path = wanted.find(line.substr(second + 1)); path != wanted.end())
            owners.emplace(path->second,
                           PackageOwner{.manager = PackageOwner::Manager::rpm,
                                        .name = std::string(line.substr(0, first)),
                                        .version = std::string(line.substr(first + 1, second - first - 1))});
    });
}

/// Desktops, and programs that a session cannot run without, regardless of their priority.
bool isDesktopShell(std::string_view package) {
    constexpr std::array<std::string_view, 36> packages{"budgie-core",
                                                        "budgie-desktop",
                                                        "cinnamon",
                                                        "cinnamon-session",
                                                        "dde-session-shell",
                                                        "gdm",
                                                        "gdm3",
                                                        "gnome-control-center",
                                                        "gnome-session",
                                                        "gnome-session-bin",
                                                        "gnome-shell",
                                                        "i3-wm",
                                                        "kwin-wayland",
                                                        "kwin-x11",
                                                        "lightdm",
                                                        "lxpanel",
                                                        "lxqt-panel",
                                                        "lxqt-session",
                                                        "lxsession",
                                                        "mate-panel",
                                                        "mate-session-manager",
                                                        "muffin",
                                                        "mutter",
                                                        "nautilus",
                                                        "plasma-desktop",
                                                        "plasma-workspace",
                                                        "sddm",
                                                        "sway",
                                                        "systemsettings",
                                                        "xdg-desktop-portal",
                                                        "xfce4-panel",
                                                        "xfce4-session",
                                                        "xfdesktop4",
                                                        "xfwm4",
                                                        "xfce4-settings",
                                                        "xwayland"};
    return std::ranges::find(packages, package) != packages.end();
}

} // namespace

std::map<std::string, PackageOwner> packageOwners(const std::set<std::string>& paths,
                                                  const PackageDatabases& databases, const RunProgram& run) {
    if (paths.empty())
        return {};
    Wanted wanted;
    std::vector<std::string>
        otherNames; // of files whose folder was moved into /usr, as their lists have them
    otherNames.reserve(paths.size());
    for (const auto& path : paths) {
        wanted.emplace(path, path);
        for (const std::string_view merged : {"/usr/bin/", "/usr/sbin/", "/usr/lib"})
            if (path.starts_with(merged))
                wanted.emplace(otherNames.emplace_back(path.substr(std::string_view("/usr").size())), path);
    }
    Owners owners;
    addDpkgOwners(wanted, databases.dpkg, owners);
    addPacmanOwners(wanted, databases.pacman, owners);
    if (owners.empty() && run && std::ranges::any_of(databases.rpm, isFolder))
        addRpmOwners(wanted, paths, run, owners);
    for (auto& [path, owner] : owners)
        owner.isEssential |= isDesktopShell(std::string_view(owner.name).substr(0, owner.name.find(':')));
    return owners;
}

std::map<std::string, std::uint64_t> dpkgSizes(const std::string& database) {
    std::map<std::string, std::uint64_t> sizes;
    const auto status = readRegularFile(joinedPath(database, "status"), mostListBytes);
    forEachStanza(status ? std::string_view(*status) : std::string_view(), [&](const DpkgStanza& stanza) {
        const std::string name(stanza.name);
        sizes.emplace(name, stanza.bytes.value_or(0));
        sizes.emplace(name + ":" + std::string(stanza.architecture), stanza.bytes.value_or(0));
    });
    return sizes;
}

std::map<std::string, std::uint64_t> pacmanSizes(const std::string& database) {
    std::map<std::string, std::uint64_t> sizes;
    std::error_code error;
    fs::directory_iterator packages(database, error);
    for (; !error && packages != fs::directory_iterator(); packages.increment(error)) {
        const auto called = packages->path().filename().string();
        if (const auto version = pacmanVersionAt(called); version != std::string::npos)
            sizes.emplace(called.substr(0, version),
                          pacmanSize((packages->path() / "desc").string()).value_or(0));
    }
    return sizes;
}

std::map<std::string, std::set<std::string>> installedPackages(const PackageDatabases& databases,
                                                               const RunProgram& run) {
    std::map<std::string, std::set<std::string>> installed;
    const auto add = [&](PackageOwner::Manager manager, std::string_view name) {
        if (!name.empty())
            installed[std::string(rawValue(manager))].emplace(name);
    };
    const auto status = readRegularFile(joinedPath(databases.dpkg, "status"), mostListBytes);
    forEachStanza(status ? std::string_view(*status) : std::string_view(),
                  [&](const DpkgStanza& stanza) { add(PackageOwner::Manager::dpkg, stanza.name); });
    std::error_code error;
    fs::directory_iterator packages(databases.pacman, error);
    for (; !error && packages != fs::directory_iterator(); packages.increment(error)) {
        const auto called = packages->path().filename().string();
        if (const auto version = pacmanVersionAt(called); version != std::string::npos)
            add(PackageOwner::Manager::pacman, std::string_view(called).substr(0, version));
    }
    // A part of them is no answer.
    if (error)
        installed.erase(std::string(rawValue(PackageOwner::Manager::pacman)));
    if (run && std::ranges::any_of(databases.rpm, isFolder)) {
        const auto output = run({"rpm", "-qa", "--qf", "%{NAME}\n"});
        forEachLine(output ? std::string_view(*output) : std::string_view(),
                    [&](std::string_view name) { add(PackageOwner::Manager::rpm, name); });
    }
    return installed;
}

std::string removalCommand(const PackageOwner& owner) {
    // It is made to be pasted into a shell: nothing in it may be more than a name.
    const auto isPlain = [](unsigned char c) {
        return std::isalnum(c) != 0
               || std::string_view("+-._:@").find(static_cast<char>(c)) != std::string_view::npos;
    };
    if (owner.name.empty() || owner.name.starts_with('-') || !std::ranges::all_of(owner.name, isPlain))
        return {};
    switch (owner.manager) {
    case PackageOwner::Manager::dpkg:
        return "sudo apt remove " + owner.name;
    case PackageOwner::Manager::rpm:
        return "sudo dnf remove " + owner.name;
    case PackageOwner::Manager::pacman:
        break;
    }
    return "sudo pacman -R " + owner.name;
}

} // namespace orbel::platform

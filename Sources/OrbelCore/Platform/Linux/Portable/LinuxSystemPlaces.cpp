#include "Platform/Linux/Portable/LinuxSystemPlaces.h"

#include "Platform/FileStatus.h"
#include "Platform/Linux/Portable/DesktopEntry.h"
#include "Platform/VolumeStatistics.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/ReadLink.h"
#include "Util/ShellWord.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

namespace orbel::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t journalKept = 200 * 1024 * 1024;
constexpr std::uint64_t mostMetadataBytes = 1024 * 1024;

bool isDigits(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char byte) { return byte >= '0' && byte <= '9'; });
}

/// A snap's file: "{name}_{revision}.snap".
struct SnapFile {
    std::string name;
    std::string revision; ///< digits, behind an "x" when it was installed from a file
};

std::optional<SnapFile> snapFileNamed(std::string_view file) {
    constexpr std::string_view ending = ".snap";
    const auto at = file.rfind('_');
    if (at == std::string_view::npos || at == 0 || !file.ends_with(ending))
        return std::nullopt;
    const auto revision = file.substr(at + 1, file.size() - at - 1 - ending.size());
    const auto isPlain = [](char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte == '-';
    };
    const auto name = file.substr(0, at);
    if (name.starts_with('-') || !std::ranges::all_of(name, isPlain)
        || !isDigits(revision.substr(revision.starts_with('x') ? 1 : 0)))
        return std::nullopt;
    return SnapFile{.name = std::string(name), .revision = std::string(revision)};
}

/// The first word of each line, behind a beginning that all of these lines have.
std::vector<std::string> packagesIn(std::string_view output, std::string_view beginning) {
    std::vector<std::string> names;
    while (!output.empty()) {
        const auto line = output.substr(0, output.find('\n'));
        output.remove_prefix(std::min(line.size() + 1, output.size()));
        if (line.starts_with(beginning))
            names.emplace_back(
                line.substr(beginning.size(), line.find(' ', beginning.size()) - beginning.size()));
    }
    return names;
}

class Search {
public:
    explicit Search(LinuxSystemSearch given) : search_(std::move(given)) {}

    std::vector<SystemPlace> run() {
        addPackageCaches();
        addOrphans();
        addJournal();
        addSnaps();
        addFlatpaks();
        addStorage("/var/lib/docker", "Containers, images and build caches of docker",
                   freeing::dockerStorage);
        addStorage("/var/lib/containers", "Containers and images of podman", freeing::systemPodmanStorage);
        addCrashes("/var/crash", "Crash reports", "sudo find /var/crash -type f -delete");
        addCrashes("/var/lib/systemd/coredump", "Memory images of crashed programs",
                   "sudo find /var/lib/systemd/coredump -type f -delete");
        addTimeshift("/timeshift");
        addTimeshift("/timeshift-btrfs");
        addSnapper();
        return std::move(places_);
    }

private:
    using Passes = std::function<bool(const std::string& name)>;

    std::string inRoot(std::string_view path) const { return search_.root + std::string(path); }

    bool isThere(const std::string& path) { return search_.resolver.resolve(path).isFound(); }

    /// The names in a folder, sorted; none when it is not there, may not be read or is out of reach.
    std::vector<std::string> namesIn(const std::string& folder) {
        std::vector<std::string> names;
        if (!isThere(folder))
            return names;
        std::error_code error;
        fs::directory_iterator entries(folder, error);
        for (; !error && entries != fs::directory_iterator(); entries.increment(error))
            names.push_back(entries->path().filename().string());
        std::ranges::sort(names);
        return names;
    }

    /// What the files directly in a folder take whose names pass.
    std::uint64_t bytesOfFiles(const std::string& folder, const Passes& passes) {
        std::uint64_t bytes = 0;
        for (const auto& name : namesIn(folder))
            if (const auto status = passes(name) ? fileStatus(joinedPath(folder, name)) : std::nullopt;
                status && status->type == FileType::regular)
                bytes += status->allocatedBytes;
        return bytes;
    }

    /// Without a link on the way: what a link leads to is elsewhere.
    std::optional<FolderSize> sizeOf(std::string_view path) {
        const auto folder = inRoot(path);
        const auto resolved = search_.resolver.resolve(folder);
        const auto status = resolved.isFound() ? fileStatus(folder) : std::nullopt;
        if (!status || status->type != FileType::directory)
            return std::nullopt;
        return search_.measure(folder);
    }

    void add(std::string_view path, std::uint64_t bytes, std::string what, std::string_view command,
             bool isUpTo = false) {
        if (bytes > 0)
            places_.push_back({.path = std::string(path),
                               .bytes = bytes,
                               .isUpTo = isUpTo,
                               .what = std::move(what),
                               .command = std::string(command)});
    }

    void addPackageCaches() {
        constexpr std::string_view what = "Downloaded packages";
        constexpr std::string_view apt = "/var/cache/apt/archives";
        const auto isDeb = [](const std::string& name) { return name.ends_with(".deb"); };
        add(apt,
            bytesOfFiles(inRoot(apt), isDeb)
                + bytesOfFiles(inRoot("/var/cache/apt/archives/partial"), [](const auto&) { return true; }),
            std::string(what), freeing::aptPackages);

        for (const std::string_view dnf : {"/var/cache/dnf", "/var/cache/libdnf5"}) {
            std::uint64_t bytes = 0;
            for (const auto& repository : namesIn(inRoot(dnf)))
                bytes += bytesOfFiles(joinedPath(joinedPath(inRoot(dnf), repository), "packages"),
                                      [](const std::string& name) { return name.ends_with(".rpm"); });
            add(dnf, bytes, std::string(what), freeing::dnfPackages);
        }

        constexpr std::string_view pacman = "/var/cache/pacman/pkg";
        const auto isNotInstalled = [this](const std::string& name) {
            // "{name}-{version}-{architecture}.pkg.tar.zst", and the signature beside it
            const auto end = name.rfind('-', name.find(".pkg.tar"));
            return end != std::string::npos && name.contains(".pkg.tar")
                   && !fileStatus(joinedPath(inRoot("/var/lib/pacman/local"), name.substr(0, end)));
        };
        add(pacman, bytesOfFiles(inRoot(pacman), isNotInstalled),
            "Downloaded packages that are not installed", freeing::pacmanPackages);
    }

    void addOrphans() {
        if (const auto dpkg = inRoot("/var/lib/dpkg"); isThere(joinedPath(dpkg, "status")))
            addOrphans(
                packagesIn(search_.run({"apt-get", "--simulate", "autoremove"}).value_or(""), "Remv "),
                [&] { return dpkgSizes(dpkg); }, freeing::aptOrphans);
        if (const auto pacman = inRoot("/var/lib/pacman/local"); isThere(pacman))
            addOrphans(
                packagesIn(search_.run({"pacman", "-Qdtq"}).value_or(""), ""),
                [&] { return pacmanSizes(pacman); }, freeing::pacmanOrphans);
    }

    void addOrphans(const std::vector<std::string>& names, const auto& readSizes, std::string_view command) {
        if (names.empty())
            return;
        const std::map<std::string, std::uint64_t> sizes = readSizes();
        std::uint64_t bytes = 0;
        bool holdsKernel = false;
        for (const auto& name : names) {
            holdsKernel |= name.starts_with("linux-image-");
            if (const auto size = sizes.find(name); size != sizes.end())
                bytes += size->second;
        }
        add("/usr", bytes,
            holdsKernel ? "Old kernels and packages that nothing needs" : "Packages that nothing needs",
            command);
    }

    /// Only archived files are removed, not those that are written to.
    void addJournal() {
        constexpr std::string_view folder = "/var/log/journal";
        const auto isArchived = [](const std::string& name) {
            return name.ends_with(".journal~") || (name.ends_with(".journal") && name.contains('@'));
        };
        std::uint64_t bytes = 0;
        for (const auto& machine : namesIn(inRoot(folder)))
            bytes += bytesOfFiles(joinedPath(inRoot(folder), machine), isArchived);
        add(folder, bytes - std::min(bytes, journalKept), "Old entries of the system journal",
            freeing::journal);
    }

    /// The revision of a snap that runs; absent when none does.
    std::optional<std::string> currentRevision(const std::string& snap) const {
        for (const auto* folder : {"/snap", "/var/lib/snapd/snap"})
            if (const auto link = linkText(inRoot(joinedPath(joinedPath(folder, snap), "current"))))
                return std::string(lastPathComponent(*link));
        return std::nullopt;
    }

    void addSnaps() {
        constexpr std::string_view folder = "/var/lib/snapd/snaps";
        std::uint64_t bytes = 0;
        bool isUpTo = false;
        std::string command;
        std::size_t count = 0;
        for (const auto& file : namesIn(inRoot(folder))) {
            const auto snap = snapFileNamed(file);
            const auto current = snap ? currentRevision(snap->name) : std::nullopt;
            const auto status = fileStatus(joinedPath(inRoot(folder), file));
            if (!current || *current == snap->revision || !status || status->type != FileType::regular)
                continue;
            bytes += status->allocatedBytes;
            isUpTo |= status->linkCount > 1; // its cache of downloads may hold it too
            command += (count++ > 0 ? " && " : "") + std::string("sudo snap remove ") + shellWord(snap->name)
                       + " --revision=" + shellWord(snap->revision);
        }
        add(folder, bytes, count == 1 ? "An old revision of a snap" : "Old revisions of snaps", command,
            isUpTo);
    }

    /// Calls `use` with "ID/ARCH/BRANCH" and the metadata of each that lies in a folder of Flatpak's.
    void forEachFlatpak(const std::string& folder, const auto& use) {
        for (const auto& id : namesIn(folder))
            for (const auto& architecture : namesIn(joinedPath(folder, id)))
                for (const auto& branch : namesIn(joinedPath(joinedPath(folder, id), architecture))) {
                    const auto name = joinedPath(joinedPath(id, architecture), branch);
                    const auto file = joinedPath(joinedPath(folder, name), "active/metadata");
                    if (const auto text = readRegularFile(file, mostMetadataBytes))
                        use(name, DesktopEntry::parse(*text));
                }
    }

    /// Runtimes that no application names, and extensions of those.
    void addFlatpaks() {
        constexpr std::string_view installation = "/var/lib/flatpak";
        std::set<std::string> named;
        for (const auto& folder :
             {inRoot("/var/lib/flatpak/app"), search_.home + "/.local/share/flatpak/app"})
            forEachFlatpak(folder, [&](const std::string& /*name*/, const DesktopEntry& metadata) {
                for (const auto* key : {"runtime", "sdk"})
                    if (auto runtime = metadata.text(key, "Application"))
                        named.insert(*std::move(runtime));
            });
        const auto runtimes = inRoot("/var/lib/flatpak/runtime");
        std::set<std::string> unused;
        std::map<std::string, std::string> bases; // of extensions
        forEachFlatpak(runtimes, [&](const std::string& name, const DesktopEntry& metadata) {
            if (auto base = metadata.text("ref", "ExtensionOf"))
                bases.emplace(name,
                              base->substr(std::min(base->size(), std::string_view("runtime/").size())));
            else if (!named.contains(name) && metadata.text("name", "Runtime") && !isExtension(name, named))
                unused.insert(name);
        });
        for (const auto& [name, base] : bases)
            if (unused.contains(base))
                unused.insert(name);
        std::uint64_t bytes = 0;
        for (const auto& name : unused)
            bytes += search_.measure(joinedPath(runtimes, name)).bytes;
        add(installation, bytes, "Flatpak runtimes that no app names", freeing::flatpakRuntimes, true);
    }

    /// Whether it is called like an extension of one of these, such as "org.a.Platform.Locale".
    static bool isExtension(std::string_view name, const std::set<std::string>& runtimes) {
        return std::ranges::any_of(runtimes, [&](const std::string& runtime) {
            return name.starts_with(runtime.substr(0, runtime.find('/')) + ".");
        });
    }

    /// What of it is in use is not known, so a part of it tells nothing.
    void addStorage(std::string_view path, std::string what, std::string_view command) {
        if (const auto size = sizeOf(path); size && size->isComplete)
            add(path, size->bytes, std::move(what), command, true);
    }

    void addCrashes(std::string_view path, std::string what, std::string_view command) {
        if (const auto size = sizeOf(path))
            add(path, size->bytes, std::move(what), command);
    }

    static std::string snapshotsOf(std::size_t count, std::string_view program) {
        return std::to_string(count) + (count == 1 ? " snapshot of " : " snapshots of ")
               + std::string(program);
    }

    /// Timeshift asks which one.
    void addTimeshift(const std::string& path) {
        const auto folder = inRoot(path + "/snapshots");
        const auto count = std::ranges::count_if(namesIn(folder), [&](const std::string& name) {
            return fileStatus(joinedPath(joinedPath(folder, name), "info.json")).has_value();
        });
        if (count > 0)
            addStorage(path, snapshotsOf(static_cast<std::size_t>(count), "Timeshift"),
                       "sudo timeshift --delete");
    }

    /// Each is a subvolume that shares most of its blocks: what the volume uses is their upper bound.
    void addSnapper() {
        constexpr std::string_view path = "/.snapshots";
        const auto volume = volumeStatistics(inRoot(path));
        const auto used = volume ? (volume->totalBlocks - volume->freeBlocks) * volume->blockSize : 0;
        std::uint64_t bytes = 0;
        std::size_t count = 0;
        for (const auto& name : namesIn(inRoot(path))) {
            const auto snapshot = joinedPath(joinedPath(inRoot(path), name), "snapshot");
            if (!isDigits(name) || !fileStatus(snapshot))
                continue;
            ++count;
            if (bytes < used)
                bytes += search_.measure(snapshot).bytes;
        }
        add(path, std::min(bytes, used), snapshotsOf(count, "snapper"), "sudo snapper cleanup number", true);
    }

    LinuxSystemSearch search_;
    std::vector<SystemPlace> places_;
};

} // namespace

std::vector<SystemPlace> linuxSystemPlaces(LinuxSystemSearch search) {
    return Search(std::move(search)).run();
}

} // namespace orbel::platform

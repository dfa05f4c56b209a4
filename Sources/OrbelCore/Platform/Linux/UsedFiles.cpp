#include "Platform/Linux/UsedFiles.h"

#include "Util/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <expected>
#include <memory>
#include <optional>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

constexpr std::string_view deletedMark = " (deleted)";

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

struct Status {
    std::uint64_t device;
    std::uint64_t inode;
    std::uint64_t linkCount;
    bool isSocket;
};

/// What the system knows of a file without asking a server for it. Never triggers an automount.
std::optional<Status> statusOf(int folder, const char* path, int flags) {
    struct statx raw {};
    if (::statx(folder, path, flags | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT,
                STATX_TYPE | STATX_INO | STATX_NLINK, &raw)
        != 0)
        return std::nullopt;
    return Status{.device = static_cast<std::uint32_t>(makedev(raw.stx_dev_major, raw.stx_dev_minor)),
                  .inode = raw.stx_ino,
                  .linkCount = raw.stx_nlink,
                  .isSocket = S_ISSOCK(raw.stx_mode)};
}

std::optional<Status> namedStatus(const std::string& path) {
    return statusOf(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW);
}

/// What an error says of a process: only that it is not there any more excuses from looking at it.
UsedFiles::Outcome outcomeOf(int error) {
    return error == ENOENT || error == ESRCH ? UsedFiles::Outcome::gone : UsedFiles::Outcome::unreadable;
}

std::expected<std::string, int> contentOf(int folder, const char* name) {
    const FileDescriptor file(::openat(folder, name, O_RDONLY | O_CLOEXEC));
    if (!file)
        return std::unexpected(errno);
    std::string content;
    std::array<char, 16384> buffer{};
    while (true) {
        const auto count = ::read(file.get(), buffer.data(), buffer.size());
        if (count < 0)
            return std::unexpected(errno);
        if (count == 0)
            return content;
        content.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

/// As a mapping's path is meant when the file that it names as it stands is not the mapped one.
std::string withLineFeeds(std::string path) {
    constexpr std::string_view escape = "\\012";
    for (auto at = path.find(escape); at != std::string::npos; at = path.find(escape, at + 1))
        path.replace(at, escape.size(), "\n");
    return path;
}

} // namespace

UsedFiles::UsedFiles(const SocketFiles* sockets) : mounts_(mountTable()), sockets_(sockets) {
    if (std::ranges::none_of(mounts_, &Mount::isNetwork))
        mounts_.clear();
}

UsedFiles::Outcome UsedFiles::ofProcess(const std::string& pid, ProcessInfo& process) {
    const FileDescriptor folder(::open(("/proc/" + pid).c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        return outcomeOf(errno);
    const auto stateText = contentOf(folder.get(), "stat");
    if (!stateText)
        return outcomeOf(stateText.error());
    auto state = parseProcessState(*stateText);
    if (!state)
        return Outcome::unreadable;
    if (state->isKernelThread || state->isEnded)
        return Outcome::gone;

    const auto program = throughLink(folder.get(), "exe", process.files);
    process.name = std::move(state->name);
    constexpr std::size_t longestName = 15;
    if (!process.files.empty() && process.name.size() == longestName)
        if (const std::string_view path = process.files.front().path;
            path.substr(path.rfind('/') + 1).starts_with(process.name))
            process.name = path.substr(path.rfind('/') + 1);
    const std::array outcomes{program, throughLink(folder.get(), "cwd", process.files),
                              throughLink(folder.get(), "root", process.files),
                              throughDescriptors(folder.get(), process.files),
                              throughMappings(folder.get(), process.files)};
    return std::ranges::count(outcomes, Outcome::unreadable) > 0 ? Outcome::unreadable : Outcome::checked;
}

UsedFiles::Outcome UsedFiles::throughLink(int folder, const char* link, std::vector<UsedFile>& files) {
    std::array<char, PATH_MAX> text{};
    const auto length = ::readlinkat(folder, link, text.data(), text.size());
    if (length < 0 && errno != ENAMETOOLONG)
        return outcomeOf(errno);
    UsedFile file{.path = std::string(text.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)))};
    if (length > 0 && !file.path.starts_with('/')) { // a socket, a pipe and the like
        throughSocket(file.path, files);
        return Outcome::checked;
    }
    if (isOnNetwork(file.path)) {
        files.push_back(std::move(file));
        return Outcome::checked;
    }
    if (const auto status = statusOf(folder, link, 0)) {
        file.device = status->device;
        file.inode = status->inode;
        if (file.path.ends_with(deletedMark)) {
            if (status->linkCount == 0)
                return Outcome::checked; // it has no name left to be moved by
            // Either it is called so, or it lives on under another name.
            const auto named = namedStatus(file.path);
            if (!named || named->inode != status->inode || named->device != status->device)
                file.path.clear();
        }
    }
    files.push_back(std::move(file));
    return Outcome::checked;
}

void UsedFiles::throughSocket(const std::string& link, std::vector<UsedFile>& files) {
    const auto inode = sockets_ == nullptr ? std::nullopt : socketInode(link);
    if (!inode)
        return;
    if (const auto bound = sockets_->find(*inode); bound != sockets_->end()) {
        heldSockets_.insert(*inode);
        files.push_back(bound->second);
    }
}

namespace {

/// Whether a descriptor only names its file and can neither read nor write it (O_PATH), as this program holds
/// what it is about to move.
bool isMereName(int descriptors, const char* link) {
    struct stat status {};
    constexpr mode_t rights = S_IRUSR | S_IWUSR;
    return ::fstatat(descriptors, link, &status, AT_SYMLINK_NOFOLLOW) == 0 && (status.st_mode & rights) == 0;
}

} // namespace

UsedFiles::Outcome UsedFiles::throughDescriptors(int process, std::vector<UsedFile>& files) {
    FileDescriptor folder(::openat(process, "fd", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder)
        return outcomeOf(errno);
    const std::unique_ptr<DIR, CloseDirectory> listing(::fdopendir(folder.get()));
    if (!listing)
        return Outcome::unreadable;
    const int descriptors = folder.release();
    auto outcome = Outcome::checked;
    while (true) {
        errno = 0;
        const dirent* const entry =
            ::readdir(listing.get()); // NOLINT(concurrency-mt-unsafe): a listing of its own
        if (entry == nullptr)
            return errno == 0 || outcomeOf(errno) == Outcome::gone ? outcome : Outcome::unreadable;
        if (entry->d_name[0] == '.')
            continue;
        const auto known = files.size();
        if (throughLink(descriptors, entry->d_name, files) == Outcome::unreadable)
            outcome = Outcome::unreadable;
        else if (files.size() > known && isMereName(descriptors, entry->d_name))
            files.pop_back();
    }
}

UsedFiles::Outcome UsedFiles::throughMappings(int process, std::vector<UsedFile>& files) {
    const auto maps = contentOf(process, "maps");
    if (!maps)
        return outcomeOf(maps.error());
    forEachMappedFile(*maps, [&](const MappedFile& mapped) {
        auto key = std::to_string(mapped.device) + ':' + std::to_string(mapped.inode);
        key += mapped.path;
        auto known = mapped_.find(key);
        if (known == mapped_.end())
            known = mapped_.emplace(std::move(key), fileOf(process, mapped)).first;
        files.push_back(known->second);
    });
    return Outcome::checked;
}

UsedFile UsedFiles::fileOf(int process, const MappedFile& mapped) const {
    UsedFile file{.device = mapped.device, .inode = mapped.inode, .path = std::string(mapped.path)};
    if (isOnNetwork(file.path))
        return file;
    // The device that stands there is wrong where a file system has subvolumes: only the file itself has the
    // right one.
    for (auto& path : {file.path, withLineFeeds(file.path)}) {
        if (const auto status = namedStatus(path); status && status->inode == file.inode)
            return {.device = status->device, .inode = status->inode, .path = path};
    }
    // No longer there under that name, or seen otherwise by the process. This needs more rights
    // than the rest.
    if (file.path.ends_with(deletedMark))
        file.path.clear();
    const std::string link = "map_files/" + std::string(mapped.range);
    if (const auto status = statusOf(process, link.c_str(), 0))
        file.device = status->device;
    return file;
}

std::vector<UsedFile> UsedFiles::ofLoopDevices() const {
    std::vector<UsedFile> files;
    const std::unique_ptr<DIR, CloseDirectory> listing(::opendir("/sys/block"));
    if (!listing)
        return files; // without it there are none to be seen, as in a container
    while (const dirent* const entry = ::readdir(listing.get())) { // NOLINT(concurrency-mt-unsafe): as above
        if (!std::string_view(entry->d_name).starts_with("loop"))
            continue;
        const std::string name = std::string(entry->d_name) + "/loop/backing_file";
        auto path = contentOf(::dirfd(listing.get()), name.c_str());
        if (!path)
            continue; // no file is behind this one
        if (path->ends_with('\n'))
            path->pop_back();
        UsedFile file{.path = std::move(*path)};
        if (const auto status = isOnNetwork(file.path) ? std::nullopt : namedStatus(file.path)) {
            file.device = status->device;
            file.inode = status->inode;
        }
        files.push_back(std::move(file));
    }
    return files;
}

SocketFiles UsedFiles::ofSockets() const {
    SocketFiles files;
    const auto sockets = contentOf(AT_FDCWD, "/proc/net/unix");
    if (!sockets)
        return files; // a system without such sockets
    forEachBoundSocket(*sockets, [&](const BoundSocket& bound) {
        UsedFile file{.path = std::string(bound.path)};
        if (!isOnNetwork(file.path)) {
            const auto status = namedStatus(file.path);
            if (!status || !status->isSocket)
                return; // another file goes by that name now
            file.device = status->device;
            file.inode = status->inode;
        }
        files.emplace(bound.inode, std::move(file));
    });
    return files;
}

bool UsedFiles::isOnNetwork(const std::string& path) const {
    const auto holds = [&](const Mount& mount) {
        return path.starts_with(mount.path)
               && (mount.path.ends_with('/') || path.size() == mount.path.size()
                   || path[mount.path.size()] == '/');
    };
    const Mount* holder = nullptr; // the innermost one, and of several in one place the latest
    for (const auto& mount : mounts_)
        if (holds(mount) && (holder == nullptr || mount.path.size() >= holder->path.size()))
            holder = &mount;
    return holder != nullptr && holder->isNetwork;
}

} // namespace orbel::platform

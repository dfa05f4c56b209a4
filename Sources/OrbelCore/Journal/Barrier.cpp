#include "Journal/Barrier.h"

#include "Journal/HeldFolder.h"
#include "Platform/Parallel.h"
#include "Platform/Synchronise.h"

#include <atomic>
#include <cerrno>
#include <utility>

#include <fcntl.h>

namespace orbel {

namespace {

/// What one flush of the file system may have to write besides what is ours, which then has to wait for it.
constexpr std::uint64_t mostForeignBytes = 256 * 1024 * 1024;

/// Flushes of files that wait at the same time are written to the disk together.
constexpr std::size_t filesPerThread = 16;

std::expected<void, int> flushFiles(const std::vector<FileDescriptor>& files) {
    std::atomic<int> error = 0;
    forEachTask(files.size(), 1 + files.size() / filesPerThread, [&](std::size_t i) {
        if (!platform::synchronise(files[i].get()))
            error = errno;
    });
    if (error != 0)
        return std::unexpected(error.load());
    return {};
}

std::expected<void, int> flushFolders(const std::vector<FileDescriptor>& folders) {
    for (const auto& folder : folders)
        // Some file systems keep no names apart from what they name, and say that there is nothing to flush.
        if (!platform::synchronise(folder.get()) && errno != EINVAL && errno != ENOTSUP)
            return std::unexpected(errno);
    return {};
}

std::expected<void, int> flushVolumes(const std::vector<FileDescriptor>& volumes) {
    for (const auto& volume : volumes)
        if (!platform::synchroniseFileSystem(volume.get()))
            return std::unexpected(errno);
    return {};
}

} // namespace

Barrier::Barrier(FileDescriptor folder) {
    const auto status = platform::fileStatus(folder.get());
    if (!status || !platform::mayFlushWholeFileSystem(folder.get())
        || platform::unwrittenBytes() > mostForeignBytes)
        return;
    volume_ = std::move(folder);
    device_ = status->device;
}

void Barrier::add(int descriptor) {
    if (isCovered(descriptor))
        return;
    FileDescriptor own(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    if (own)
        files_.push_back(std::move(own));
    else
        fail(errno);
}

void Barrier::add(const HeldFolder& folder) {
    addFolder(folder, folder, arrivals_);
}

void Barrier::addMove(const HeldFolder& from, const HeldFolder& to) {
    const bool isCoveredFrom = isCovered(from.descriptor());
    const bool isCoveredTo = isCovered(to.descriptor());
    if (isCoveredFrom && isCoveredTo)
        return;
    if (platform::keepsMovesByFolder(to.descriptor())) {
        addFolder(to, from, arrivals_);
        addFolder(from, to, departures_);
    } else if (!isCoveredTo) {
        addVolume(to);
    }
}

void Barrier::fail(int error) {
    error_ = error;
}

bool Barrier::keepsOrder() const {
    return volume_ && !error_ && files_.empty() && arrivals_.open.empty() && volumes_.open.empty()
           && departures_.open.empty();
}

std::expected<void, int> Barrier::pass() {
    if (error_)
        return std::unexpected(*error_);
    if (std::exchange(isVolumeChanged_, false) && !platform::synchroniseFileSystem(volume_.get()))
        return std::unexpected(errno);
    if (auto lasts = flushFiles(std::exchange(files_, {})); !lasts)
        return lasts;
    if (auto lasts = flushFolders(std::exchange(arrivals_, {}).open); !lasts)
        return lasts;
    if (auto lasts = flushVolumes(std::exchange(volumes_, {}).open); !lasts)
        return lasts;
    return flushFolders(std::exchange(departures_, {}).open);
}

bool Barrier::isCovered(int descriptor) {
    const auto status = volume_ ? platform::fileStatus(descriptor) : std::nullopt;
    const bool isHere = status && status->device == device_;
    isVolumeChanged_ = isVolumeChanged_ || isHere;
    return isHere;
}

void Barrier::addFolder(const HeldFolder& folder, const HeldFolder& other, Folders& folders) {
    if (isCovered(folder.descriptor()))
        return;
    const auto identity = folder.identity();
    if (identity && !folders.known.insert(*identity).second)
        return;
    // What is held may serve for nothing but calls relative to it: it has to be opened for reading.
    auto readable = folder.openForFlush();
    if (readable)
        folders.open.push_back(*std::move(readable));
    else if (readable.error() == EACCES) // it can be flushed only with all of its file system
        addVolume(other);
    else
        fail(readable.error());
}

void Barrier::addVolume(const HeldFolder& folder) {
    const auto identity = folder.identity();
    if (identity && !volumes_.known.insert({.device = identity->device, .inode = 0}).second)
        return;
    if (auto readable = folder.openForFlush())
        volumes_.open.push_back(*std::move(readable));
    else
        fail(readable.error());
}

} // namespace orbel

#include "Journal/PrivateFile.h"

#include "Platform/Synchronise.h"
#include "Util/PathText.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

namespace {

constexpr mode_t ownerOnly = 0600;

/// Why this must not be taken for a file of ours; empty when it may.
std::string_view objection(const struct stat& status) {
    if (S_ISLNK(status.st_mode))
        return "is a symbolic link";
    if (!S_ISREG(status.st_mode))
        return "is not a regular file";
    if (status.st_uid != ::geteuid())
        return "belongs to another user";
    if (status.st_nlink != 1)
        return "has a second name (a hard link)";
    return {};
}

std::expected<PrivateFile, JournalError> checked(PrivateFile opened, PrivateFile::Access access,
                                                 const std::string& path) {
    struct stat status {};
    if (::fstat(opened.file.get(), &status) != 0)
        return std::unexpected(systemErrorAt(path));
    if (const auto why = objection(status); !why.empty())
        return std::unexpected(errorAt(path, why));
    if (access != PrivateFile::Access::read && (status.st_mode & 07777) != ownerOnly
        && ::fchmod(opened.file.get(), ownerOnly) != 0)
        return std::unexpected(systemErrorAt(path));
    return opened;
}

} // namespace

FileDescriptor openExistingFolder(const std::string& path) {
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

std::expected<FileDescriptor, JournalError> openFolder(const std::string& path) {
    if (auto folder = openExistingFolder(path))
        return folder;
    const std::string above(parentPath(path));
    if (errno != ENOENT || above.empty() || above == path)
        return std::unexpected(systemErrorAt(path));
    const auto parent = openFolder(above);
    if (!parent)
        return std::unexpected(parent.error());
    // Another process may make it at the same time.
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST)
        return std::unexpected(systemErrorAt(path));
    auto folder = openExistingFolder(path);
    if (!folder || !platform::synchronise(parent->get()))
        return std::unexpected(systemErrorAt(path));
    return folder;
}

std::expected<PrivateFile, JournalError> PrivateFile::open(int folder, const std::string& name, Access access,
                                                           const std::string& path) {
    constexpr int always = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    // The file may vanish or appear between two looks at it; nobody does that to it forever.
    for (int attempt = 0; attempt < 100; ++attempt) {
        struct stat status {};
        if (access != Access::makeForAppend
            && ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0) {
            // Looked at before it is opened: opening alone can hang on a pipe or stir a device.
            if (const auto why = objection(status); !why.empty())
                return std::unexpected(errorAt(path, why));
            const int rights = access == Access::read ? O_RDONLY : O_RDWR | O_APPEND;
            FileDescriptor file(::openat(folder, name.c_str(), rights | always));
            if (file)
                return checked({.file = std::move(file), .isNew = false}, access, path);
            if (errno == ENOENT)
                continue;
            return std::unexpected(systemErrorAt(path));
        }
        if (access == Access::read || access == Access::change
            || (access == Access::appendOrMake && errno != ENOENT))
            return std::unexpected(systemErrorAt(path));
        FileDescriptor file(
            ::openat(folder, name.c_str(), O_RDWR | O_APPEND | O_CREAT | O_EXCL | always, ownerOnly));
        if (file)
            return checked({.file = std::move(file), .isNew = true}, access, path);
        if (errno != EEXIST || access == Access::makeForAppend)
            return std::unexpected(systemErrorAt(path));
    }
    return std::unexpected(errorAt(path, "is being replaced again and again"));
}

bool PrivateFile::isStillAt(int folder, const std::string& name) const {
    struct stat opened {};
    struct stat named {};
    return ::fstat(file.get(), &opened) == 0
           && ::fstatat(folder, name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0
           && opened.st_dev == named.st_dev && opened.st_ino == named.st_ino && opened.st_nlink == 1;
}

// Not POSIX record locks, which are lost as soon as any descriptor of the file is closed.
bool tryLock(int file) {
    int result = 0;
    do
        result = ::flock(file, LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    return result == 0;
}

bool waitForLock(int file) {
    using namespace std::chrono_literals;
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    for (auto pause = 1ms; !tryLock(file); pause = std::min(pause * 2, 32ms)) {
        if (errno != EWOULDBLOCK)
            return false;
        if (std::chrono::steady_clock::now() >= deadline) {
            errno = EWOULDBLOCK;
            return false;
        }
        std::this_thread::sleep_for(pause);
    }
    return true;
}

void releaseLock(int file) {
    ::flock(file, LOCK_UN);
}

std::size_t appendBytes(int file, std::string_view bytes) {
    std::size_t written = 0;
    while (written < bytes.size()) {
        const auto count = ::write(file, bytes.data() + written, bytes.size() - written);
        if (count > 0)
            written += static_cast<std::size_t>(count);
        else if (count == 0 || errno != EINTR)
            return written;
    }
    return written;
}

JournalError errorAt(const std::string& path, std::string_view what) {
    return {.words = path + ": " + std::string(what)};
}

JournalError systemErrorAt(const std::string& path) {
    return errorAt(path, errno == EWOULDBLOCK ? "another program keeps it locked"
                                              : std::generic_category().message(errno));
}

} // namespace orbel

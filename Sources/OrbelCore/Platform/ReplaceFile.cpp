#include "Platform/ReplaceFile.h"

#include "Platform/Synchronise.h"
#include "Util/FileDescriptor.h"
#include "Util/PathText.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

namespace {

std::unexpected<std::string> failure(int number = errno) {
    return std::unexpected(std::generic_category().message(number));
}

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto count = ::write(file, bytes.data(), bytes.size());
        if (count > 0)
            bytes.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return false;
    }
    return true;
}

/// A file under a name that nothing else has, removed again unless it was given its final name.
class PassingFile {
public:
    PassingFile(const std::string& folder, mode_t mode) {
        // Short, so that it fits wherever the final name does.
        for (int attempt = 0; attempt < 100 && !file_; ++attempt) {
            path_ =
                joinedPath(folder, ".orbel-" + std::to_string(::getpid()) + "-" + std::to_string(attempt));
            file_ = FileDescriptor(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
            if (!file_ && errno != EEXIST)
                return;
        }
    }
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;
    ~PassingFile() {
        if (file_ && !isPlaced_)
            ::unlink(path_.c_str());
    }

    explicit operator bool() const { return static_cast<bool>(file_); }
    int descriptor() const { return file_.get(); }

    bool place(const std::string& path) {
        isPlaced_ = ::rename(path_.c_str(), path.c_str()) == 0;
        return isPlaced_;
    }

private:
    std::string path_;
    FileDescriptor file_;
    bool isPlaced_ = false;
};

} // namespace

std::expected<void, std::string> replaceFile(const std::string& path, std::string_view content,
                                             FileAccess access) {
    struct stat existing {};
    const bool exists = ::lstat(path.c_str(), &existing) == 0;
    if (!exists && errno != ENOENT)
        return failure();
    if (exists && S_ISDIR(existing.st_mode))
        return failure(EISDIR);
    if (exists && !S_ISREG(existing.st_mode))
        return std::unexpected("Not a regular file");
    if (path.ends_with('/'))
        return failure(EISDIR);

    const std::string folder(parentPath(path));
    const bool isPrivate = access == FileAccess::ownerOnly;
    PassingFile file(folder.empty() ? "." : folder, isPrivate ? 0600 : 0666);
    if (!file)
        return failure();
    if (!writeAll(file.descriptor(), content)
        || (exists && !isPrivate && ::fchmod(file.descriptor(), existing.st_mode & 07777) != 0)
        || !platform::synchronise(file.descriptor()) || !file.place(path))
        return failure();
    return {};
}

} // namespace orbel

#pragma once

#include "Platform/FileStatus.h"
#include "Util/FileDescriptor.h"

#include <expected>
#include <string>

namespace orbel::platform {

/// A regular file that is open for reading, and what it was when it had just been opened.
struct FileContent {
    FileDescriptor descriptor;
    FileStatus status;

    /// Opens what lies at `path` to read its bytes, leaving its access time alone where the system lets this
    /// user. A link is not followed, and the call does not block when a pipe or a device took the file's
    /// place. The error is an errno, EINVAL for what is no regular file.
    static std::expected<FileContent, int> open(const std::string& path);

    /// Tells the system that the file will be read once, from its start to its end: it reads ahead further,
    /// and does not count what is read as frequently used. Nothing is evicted from its cache.
    void expectOneReading() const;
};

/// Whether the file system says that some of the file's blocks belong to another file too. Asks only where
/// files can share blocks, and only what a listing does not tell already (macOS): false there, and when it
/// cannot be asked.
bool sharesBlocks(const std::string& path);

} // namespace orbel::platform

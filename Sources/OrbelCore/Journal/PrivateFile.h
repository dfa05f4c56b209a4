#pragma once

#include "Journal/JournalError.h"
#include "Util/FileDescriptor.h"

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

namespace orbel {

// The files of the journal and of the intents beside it, opened so that nothing put in their place is ever
// written to or believed: only a regular file of this user's own with a single name will do, and no symbolic
// link is followed in the place of the file itself. (The folders above it may be links; people move their
// data folders that way.) Errors name the file and carry the system's words.

/// Opens a folder, making it and those above it when missing: mode 0700, as the XDG base directory
/// specification wants it, each brought to stable storage in the folder above.
std::expected<FileDescriptor, JournalError> openFolder(const std::string& path);

/// Opens a folder that must be there already; none when it cannot be opened, with errno set.
FileDescriptor openExistingFolder(const std::string& path);

/// An open file together with where it was found.
struct PrivateFile {
    enum class Access : std::uint8_t {
        read,          ///< an existing file
        change,        ///< an existing file, for reading and appending
        appendOrMake,  ///< the same, made with mode 0600 when missing
        makeForAppend, ///< one that must not exist yet
    };

    FileDescriptor file;
    bool isNew = false; ///< the folder must then be synchronised before the file counts as there

    /// Opens `name` in the open folder. `path` only serves the words of an error. What is opened for changing
    /// gets mode 0600, whatever it had and whatever the umask is.
    static std::expected<PrivateFile, JournalError> open(int folder, const std::string& name, Access access,
                                                         const std::string& path);

    /// Whether the name in the folder still leads to this file, and is its only one.
    bool isStillAt(int folder, const std::string& name) const;
};

/// Locks an open file against every other open of it, in this process and in others, until its descriptor is
/// closed. False when another holds it (errno is then EWOULDBLOCK), or when it cannot be locked.
bool tryLock(int file);

/// The same, but waits as long as an append may take elsewhere, and then some: 10 seconds. A holder that was
/// stopped must not stop us too.
bool waitForLock(int file);

/// Gives the lock up before the last descriptor of the open file is closed.
void releaseLock(int file);

/// Writes all bytes at the end of a file opened for appending, in one call if the system lets it. Returns how
/// many were written; when fewer than given, errno says why.
std::size_t appendBytes(int file, std::string_view bytes);

/// "{path}: {what}"
JournalError errorAt(const std::string& path, std::string_view what);
/// "{path}: {the words of errno}"
JournalError systemErrorAt(const std::string& path);

} // namespace orbel

#pragma once

#include "Platform/FileStatus.h"
#include "Util/FileDescriptor.h"

#include <expected>
#include <optional>
#include <string>
#include <utility>

namespace orbel::platform {

/// Keeps one object in existence for as long as this lives, even when its last name is removed: its inode
/// number cannot meanwhile be given to another object, so what shows that number later is this very object.
/// It is not opened for reading, holding it has no side effects, and it can still be moved and removed.
class HeldObject {
public:
    /// Holds what lies at `path`, a link itself and never its target. The error is an errno.
    static std::expected<HeldObject, int> hold(const std::string& path);

    /// What the object is now; absent when it cannot be asked.
    std::optional<FileStatus> status() const {
        return descriptor_ ? fileStatus(descriptor_.get()) : fileStatus(path_);
    }

private:
    HeldObject(std::string path, FileDescriptor descriptor)
        : path_(std::move(path)), descriptor_(std::move(descriptor)) {}

    std::string path_;
    FileDescriptor descriptor_; ///< none where numbers are never given twice and it could not be opened
};

} // namespace orbel::platform

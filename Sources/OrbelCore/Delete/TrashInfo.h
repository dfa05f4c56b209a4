#pragma once

#include "Journal/HeldFolder.h"

#include <chrono>
#include <expected>
#include <string>
#include <string_view>

namespace orbel {

class Barrier;

/// What the info file of an item says that was at the absolute `path` and is moved to the Trash now: the path
/// with all but the plainest bytes escaped as in URLs, and the time in the user's time zone.
std::string trashInfoText(std::string_view path, std::chrono::system_clock::time_point now);

/// An info file that stands for an item about to move. It is removed again unless it is told to stay.
class PendingTrashInfo {
public:
    /// Makes the file `name` in the folder, for the user alone, and adds it to `barrier`: it is whole and on
    /// the disk once that was passed. The error is an errno, EEXIST when the name is taken; there is then no
    /// new file. `folder` must live as long as this.
    static std::expected<PendingTrashInfo, int> create(const HeldFolder& folder, std::string name,
                                                       std::string_view content, Barrier& barrier);

    PendingTrashInfo(PendingTrashInfo&& other) noexcept;
    PendingTrashInfo& operator=(PendingTrashInfo&&) = delete;
    ~PendingTrashInfo();

    /// Whether the file is still there. Another program may empty the Trash at any moment.
    bool isInPlace() const { return folder_ != nullptr && folder_->identityOf(name_) == identity_; }

    void keep() { folder_ = nullptr; }

private:
    PendingTrashInfo(const HeldFolder& folder, std::string name, const FileIdentity& identity)
        : folder_(&folder), name_(std::move(name)), identity_(identity) {}

    const HeldFolder* folder_; ///< null once nothing is to be removed any more
    std::string name_;
    FileIdentity identity_;
};

} // namespace orbel

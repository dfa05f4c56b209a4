#include "Platform/MountTable.h"

#include "Platform/Linux/Portable/MountInfo.h"
#include "Util/FileDescriptor.h"
#include "Util/ReadFile.h"

#include <cerrno>
#include <mutex>
#include <poll.h>

#include <fcntl.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

constexpr auto tablePath = "/proc/self/mountinfo";

/// The table as it was read last, and an open file of it, on which the system signals each change.
class WatchedTable {
public:
    SharedMountTable current() {
        const std::scoped_lock guard(lock_);
        if (!isCurrent())
            read();
        return mounts_;
    }

private:
    bool isCurrent() const {
        // An open file is shared with a forked process, and a change is signalled on it only once.
        if (!table_ || process_ != ::getpid())
            return false;
        struct pollfd change {
            .fd = table_.get(), .events = POLLPRI, .revents = 0
        };
        return ::poll(&change, 1, 0) == 0;
    }

    void read() {
        // Opened before it is read: a change in between is then seen at the next question.
        process_ = ::getpid();
        table_ = FileDescriptor(::open(tablePath, O_RDONLY | O_CLOEXEC));
        const auto text = readFile(tablePath);
        mounts_ =
            std::make_shared<const std::vector<Mount>>(text ? parseMountInfo(*text) : std::vector<Mount>());
        if (!text)
            table_.reset();
    }

    std::mutex lock_;
    FileDescriptor table_;
    pid_t process_ = 0; ///< that opened it
    SharedMountTable mounts_;
};

} // namespace

SharedMountTable sharedMountTable() {
    static WatchedTable table;
    return table.current();
}

} // namespace orbel::platform

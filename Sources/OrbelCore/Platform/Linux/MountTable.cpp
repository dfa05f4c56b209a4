#include "Platform/MountTable.h"

#include "Platform/Linux/Portable/MountInfo.h"
#include "Util/FileDescriptor.h"
#include "Util/ReadFile.h"

#include <cerrno>
#include <mutex>
#include <poll.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel::platform {

namespace {

constexpr auto tablePath = "/proc/self/mountinfo";

/// The table as it was read last, and an open file of it, on which the system signals each change.
class WatchedTable {
public:
    std::vector<Mount> current() {
        const std::scoped_lock guard(lock_);
        if (!isCurrent())
            read();
        return mounts_;
    }

private:
    /// A file of the table belongs to the process and the mount namespace in which it was opened.
    struct Owner {
        pid_t process = 0;
        ino_t space = 0;

        static Owner now() {
            struct stat space {};
            return {.process = ::getpid(),
                    .space = ::stat("/proc/self/ns/mnt", &space) == 0 ? space.st_ino : 0};
        }
        bool operator==(const Owner&) const = default;
    };

    bool isCurrent() const {
        if (!table_ || owner_.space == 0 || owner_ != Owner::now())
            return false;
        struct pollfd change {
            .fd = table_.get(), .events = POLLPRI, .revents = 0
        };
        return ::poll(&change, 1, 0) == 0;
    }

    void read() {
        // Opened before it is read: a change in between is then seen at the next question.
        owner_ = Owner::now();
        table_ = FileDescriptor(::open(tablePath, O_RDONLY | O_CLOEXEC));
        const auto text = readFile(tablePath);
        mounts_ = text ? parseMountInfo(*text) : std::vector<Mount>{};
        if (!text)
            table_.reset();
    }

    std::mutex lock_;
    FileDescriptor table_;
    Owner owner_;
    std::vector<Mount> mounts_;
};

} // namespace

std::vector<Mount> mountTable() {
    static WatchedTable table;
    return table.current();
}

} // namespace orbel::platform

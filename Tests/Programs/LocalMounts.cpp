// Runs a command without the mounts that a server or a user program has to answer for, where this process may
// have a mount table of its own; elsewhere just runs it.
//
//   local-mounts COMMAND [WORD...]

#include "Platform/MountTable.h"
#include "Safety/RealPath.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace {

/// What the command itself needs stays, even from a server.
bool isNeeded(const std::string& mountPoint) {
    const char* const home = std::getenv("HOME");
    return orbel::RealPath::isInside("/usr/bin", mountPoint)
           || (home != nullptr && orbel::RealPath::isInside(home, mountPoint));
}

/// The mount points are never looked at: that might wait forever. What is mounted inside one goes with it.
void detachRemoteMounts() {
    for (const auto& mount : orbel::platform::mountTable()) {
        if (mount.isNetwork && !isNeeded(mount.path))
            ::umount2(mount.path.c_str(), MNT_DETACH | UMOUNT_NOFOLLOW);
    }
}

} // namespace

int main(int count, char** words) {
    if (count < 2)
        return 2;
    if (::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0)
        detachRemoteMounts();
    ::execvp(words[1], words + 1);
    std::perror(words[1]);
    return 127;
}

#include "Platform/Threads.h"

#include <algorithm>

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace orbel::platform {

void nameThisThread(const std::string& name) {
    constexpr std::size_t longestName = 15; // without the closing zero
    pthread_setname_np(pthread_self(), name.substr(0, longestName).c_str());
}

void forbidMaterialisationOnThisThread() {}

void giveWayOnThisThread() {
    // Linux keeps this value for each thread, other than POSIX. To raise it is always allowed.
    constexpr int politeness = 5;
    setpriority(PRIO_PROCESS, 0, politeness);
}

int activeProcessorCount() {
    cpu_set_t allowed;
    if (sched_getaffinity(0, sizeof allowed, &allowed) == 0)
        return std::max(CPU_COUNT(&allowed), 1);
    return std::max(static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN)), 1);
}

} // namespace orbel::platform

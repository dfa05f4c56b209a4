#include "Platform/Threads.h"

#include <algorithm>
#include <pthread/qos.h>

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

namespace orbel::platform {

void nameThisThread(const std::string& name) {
    constexpr std::size_t longestName = 63; // without the closing zero
    pthread_setname_np(name.substr(0, longestName).c_str());
}

void forbidMaterialisationOnThisThread() {
    // It fails only on systems that have no such files.
    setiopolicy_np(IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES, IOPOL_SCOPE_THREAD,
                   IOPOL_MATERIALIZE_DATALESS_FILES_OFF);
}

void giveWayOnThisThread() {
    // No other thread inherits it; the default class of others is below that of the main thread.
    pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0);
}

int activeProcessorCount() {
    return std::max(static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN)), 1);
}

} // namespace orbel::platform

#include "Platform/Process.h"

#include <algorithm>
#include <crt_externs.h>

#include <mach/mach.h>
#include <mach/task_info.h>

namespace orbel::platform {

std::uint64_t peakFootprintBytes() {
    task_vm_info_data_t info{};
    mach_msg_type_number_t count = TASK_VM_INFO_COUNT;
    if (::task_info(mach_task_self(), TASK_VM_INFO, reinterpret_cast<task_info_t>(&info), &count)
            != KERN_SUCCESS
        || count < TASK_VM_INFO_REV3_COUNT) // an older system stops short of the ledgers
        return 0;
    return static_cast<std::uint64_t>(std::max<std::int64_t>(info.ledger_phys_footprint_peak, 0));
}

std::vector<std::string> processArguments() {
    char** const words = *_NSGetArgv();
    return {words, words + *_NSGetArgc()};
}

} // namespace orbel::platform

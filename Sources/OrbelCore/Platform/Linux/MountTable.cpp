#include "Platform/MountTable.h"

#include "Platform/Linux/Portable/MountInfo.h"
#include "Util/ReadFile.h"

namespace orbel::platform {

std::vector<Mount> mountTable() {
    const auto text = readFile("/proc/self/mountinfo");
    return text ? parseMountInfo(*text) : std::vector<Mount>{};
}

} // namespace orbel::platform

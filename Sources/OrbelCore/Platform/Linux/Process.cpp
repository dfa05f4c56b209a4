#include "Platform/Process.h"

#include "Util/ReadFile.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace orbel::platform {

std::uint64_t peakFootprintBytes() {
    // The high-water mark of the resident set. getrusage would also count what the parent held before exec.
    constexpr std::string_view key = "VmHWM:";
    const auto status = readFile("/proc/self/status");
    if (!status)
        return 0;
    const auto start = status->find(key);
    if (start == std::string::npos)
        return 0;
    const auto digits = status->find_first_of("0123456789", start);
    if (digits == std::string::npos)
        return 0;
    std::uint64_t kibibytes = 0;
    std::from_chars(status->data() + digits, status->data() + status->size(), kibibytes);
    return kibibytes * 1024;
}

std::vector<std::string> processArguments() {
    std::vector<std::string> arguments;
    const auto line = readFile("/proc/self/cmdline");
    for (std::size_t start = 0; line && start < line->size();) {
        const auto end = std::min(line->find('\0', start), line->size());
        arguments.push_back(line->substr(start, end - start));
        start = end + 1;
    }
    return arguments;
}

} // namespace orbel::platform

#include "Delete/ProcessUse.h"

#include "Util/Utf8.h"

#include <algorithm>

namespace orbel {

ProcessUse ProcessUse::of(const platform::ProcessInfo& process) {
    std::string name = lossyUtf8(process.name);
    // A program chooses its name freely: it must not break the line it is shown in.
    std::ranges::replace_if(
        name, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, ' ');
    return {.pid = process.pid, .name = name.empty() ? "process " + std::to_string(process.pid) : name};
}

} // namespace orbel

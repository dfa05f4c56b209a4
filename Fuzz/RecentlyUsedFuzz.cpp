#include "Platform/Linux/Portable/RecentlyUsed.h"
#include "Util/Check.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

// Whatever bytes are in the list's place: reading them ends, and names only absolute paths.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    for (const auto& [path, date] : orbel::platform::recentlyUsedIn(text))
        ORBEL_CHECK(path.starts_with('/'), "a path of a local file");
    return 0;
}

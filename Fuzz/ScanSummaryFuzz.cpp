#include "Growth/Growth.h"
#include "Growth/SummaryJson.h"
#include "Util/Check.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

// Whatever bytes are in a summary's place: reading them never fails, what is read is written again as a text
// that reads the same, and comparing it with another one, either way round, lists nothing that is more than
// what is there.

namespace orbel {
namespace {

void compare(const ScanSummary& before, const ScanSummary& after) {
    for (const auto& folder : Growth::between(before, after).folders)
        ORBEL_CHECK(folder.grownBytes >= Growth::leastBytes && folder.grownBytes <= folder.bytes,
                    "no folder grew by more than it has");
}

} // namespace
} // namespace orbel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orbel;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto end = bytes.find('\n');
    const auto first = summaryIn(bytes.substr(0, end));
    const auto second = summaryIn(end == std::string_view::npos ? bytes : bytes.substr(end + 1));
    if (first) {
        ORBEL_CHECK(summaryIn(summaryText(*first)) == first, "a summary survives being written");
        ORBEL_CHECK(Growth::between(*first, *first).folders.empty(), "nothing grew since itself");
    }
    if (first && second) {
        compare(*first, *second);
        compare(*second, *first);
    }
    return 0;
}

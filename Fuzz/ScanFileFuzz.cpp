#include "Compare/ScanComparison.h"
#include "Saved/Compression.h"
#include "Saved/FrameFile.h"
#include "Saved/ScanFile.h"
#include "Util/Check.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// Whatever bytes are opened as a scan: reading them never fails, and what is read is a tree that can be kept
// and read again. Random bytes hardly ever have the right check sums, so they are also taken as what is
// compressed in the parts of a file, one part after each separator.

namespace orbel {
namespace {

std::vector<Packed> partsIn(std::string_view bytes) {
    constexpr std::string_view separator = "\xFF\xFE\xFD";
    std::vector<Packed> parts;
    while (true) {
        const auto end = bytes.find(separator);
        parts.push_back(packed(bytes.substr(0, end)));
        if (end == std::string_view::npos)
            return parts;
        bytes.remove_prefix(end + separator.size());
    }
}

void tryToRead(std::string_view bytes) {
    const auto kept = scanFromFile(bytes);
    const auto header = scanHeaderIn(bytes);
    if (!kept)
        return;
    ORBEL_CHECK(header && header->origin == kept->origin && header->entries == kept->tree.count()
                    && header->allocatedBytes == kept->tree.allocated(0),
                "the header of a scan tells of its nodes");
    ORBEL_CHECK(ScanComparison::between(kept->tree, kept->tree).changes.empty(),
                "nothing changed since itself");
    const auto again = scanFileBytes(kept->tree, kept->origin);
    const auto second = scanFromFile(again);
    ORBEL_CHECK(second && scanFileBytes(second->tree, second->origin) == again, "a scan survives being kept");
    ORBEL_CHECK(second->tree.count() == kept->tree.count(), "all of it");
}

} // namespace
} // namespace orbel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orbel;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    tryToRead(bytes);
    tryToRead(FrameFile::bytesOf(partsIn(bytes)));
    return 0;
}

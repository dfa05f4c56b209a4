#include "Export/NcduExport.h"
#include "Saved/NcduImport.h"
#include "Util/Check.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Whatever bytes are opened as an export: reading them never fails, and what is read is a tree that can be
// kept, and exported and read again.

namespace orbel {
namespace {

std::string exported(const KeptScan& scan) {
    std::string text;
    exportAsNcdu(scan.tree, scan.origin.measuredAt, [&](std::string_view piece) { text += piece; });
    return text;
}

void tryToImport(std::string_view bytes) {
    const auto kept = scanFromNcdu(*textPieces(bytes));
    if (!kept || !*kept)
        return;
    const auto scan = scanFromFile(scanFileBytes((*kept)->tree, (*kept)->origin));
    ORBEL_CHECK(scan && scan->tree.count() == (*kept)->tree.count(), "a scan survives being kept");
    const auto text = exported(**kept);
    const auto again = scanFromNcdu(*textPieces(text));
    ORBEL_CHECK(again && *again, "an export that can be read");
    ORBEL_CHECK((*again)->tree.allocated(0) == (*kept)->tree.allocated(0), "as many bytes");
    ORBEL_CHECK((*again)->tree.count() == (*kept)->tree.count(), "all of it");
}

} // namespace
} // namespace orbel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orbel;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    tryToImport(bytes);
    // Most of what is tried does not begin as an export.
    tryToImport("[1,2,{},[{\"name\":\"/\"}," + std::string(bytes) + "]]");
    return 0;
}

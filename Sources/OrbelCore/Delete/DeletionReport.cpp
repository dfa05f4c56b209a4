#include "Delete/DeletionReport.h"

#include "Safety/ByteFormat.h"

namespace orbel {

std::uint64_t DeletionReport::movedBytes() const {
    std::uint64_t sum = 0;
    for (const auto& item : moved)
        sum += item.bytes;
    return sum;
}

std::string DeletionReport::headline() const {
    return "Moved to Trash: " + ByteFormat::string(movedBytes()) + " (measured just now).";
}

} // namespace orbel

#pragma once

#include "Models/TickedItem.h"
#include "Scan/Exclusions.h"
#include "Scan/ScanCancellation.h"
#include "Scan/TreeScanner.h"

#include <map>
#include <string>

namespace orbel {

/// Measures items as a plan asks for them, and keeps what else was seen on the way. One thread; a cancelled
/// one ends soon, with figures that are not to be shown.
class ItemMeasure {
public:
    /// `cancellation` outlives this.
    explicit ItemMeasure(const ScanCancellation& cancellation) : cancellation_(cancellation) {}

    TreeScanner::Measurement measure(const std::string& path);

    /// The item with what a confirmation has to tell of it. What is left out of measuring is refused, in the
    /// item given as well.
    TickedItem ticked(DeletionItem& item, const Exclusions& exclusions, const std::string& home) const;

private:
    const ScanCancellation& cancellation_;
    std::map<std::string, TickedItem> seen_;
};

} // namespace orbel

#pragma once

#include "Delete/DeletionItem.h"
#include "Scan/TreeScanner.h"

#include <functional>
#include <string>
#include <string_view>

namespace orbel {

class SafetyPolicy;

/// Items of the module uninstall: applications, and what they leave. Not instantiable.
struct LeftoverItem {
    LeftoverItem() = delete;

    /// Gives the size of an item and whether it holds protected data; empty walks the disk.
    using Measure = std::function<TreeScanner::Measurement(const std::string& path)>;

    /// A leftover, neither asked about nor measured. `evidence`: why it is one; may be empty.
    static DeletionItem at(const std::string& path, const std::string& evidence);

    /// Asks the policy; what may be moved at all is measured and searched for what must stay.
    static void check(DeletionItem& item, const SafetyPolicy& policy, const Measure& measure);

    /// The evidence that the item was made with; empty when there was none.
    static std::string_view evidence(const DeletionItem& item);
};

} // namespace orbel

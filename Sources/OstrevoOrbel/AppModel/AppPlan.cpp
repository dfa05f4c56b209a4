#include "AppModel/AppPlan.h"

#include "Delete/ExclusionReason.h"
#include "Platform/FileStatus.h"
#include "Scan/TreeScanner.h"
#include "Util/PathText.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <string>

namespace orbel {

namespace {

/// Measures items as the plan asks for them, and keeps what else was seen on the way.
class ItemMeasure {
public:
    explicit ItemMeasure(const ScanCancellation& cancellation) : cancellation_(cancellation) {}

    TreeScanner::Measurement measure(const std::string& path) {
        const auto status = platform::fileStatus(path);
        if (!status || status->type != platform::FileType::directory)
            return TreeScanner::measure(path);
        const auto tree = TreeScanner::scan(path, std::nullopt, cancellation_, nullptr).tree;
        const auto measured = TreeScanner::measurement(tree);
        if (tree.count() > 0)
            seen_[path] = TickedItem::ofNode(DeletionItem(), tree, 0);
        return measured;
    }

    TickedItem ticked(DeletionItem item) const {
        if (const auto seen = seen_.find(item.path); seen != seen_.end()) {
            auto ticked = seen->second;
            ticked.item = std::move(item);
            return ticked;
        }
        const bool isFolder = item.scanStamp.isDirectory;
        auto ticked = TickedItem::alone(item, classifyContent(lastPathComponent(item.path), isFolder));
        // What a file with other names holds stays with them.
        const auto status = platform::fileStatus(item.path);
        ticked.leastFreed = status && status->linkCount > 1 ? 0 : item.estimatedBytes;
        return ticked;
    }

private:
    const ScanCancellation& cancellation_;
    std::map<std::string, TickedItem> seen_;
};

} // namespace

AppPlan AppPlan::make(const InstalledApp& app, const std::vector<InstalledApp>& inventory,
                      const LeftoverMatcher& matcher, const SafetyPolicy& policy,
                      const UninstallPlan::Running& running, const Exclusions& exclusions,
                      const ScanCancellation& cancellation) {
    std::vector<InstalledApp> others;
    std::ranges::copy_if(inventory, std::back_inserter(others),
                         [&](const InstalledApp& other) { return other.path != app.path; });
    ItemMeasure measure(cancellation);
    AppPlan made{.plan = UninstallPlan::make(
                     app, others, matcher, policy,
                     [&](const std::string& path) { return measure.measure(path); }, running),
                 .items = {}};
    for (auto& item : made.plan.items) {
        auto reason =
            item.isSelectable() ? exclusionReason(exclusions, item.path, policy.homePath()) : std::nullopt;
        if (!reason)
            continue;
        item.blockedReason = std::move(reason);
        item.preselected = false;
    }
    made.items.reserve(made.plan.items.size());
    for (const auto& item : made.plan.items)
        made.items.push_back(measure.ticked(item));
    return made;
}

} // namespace orbel

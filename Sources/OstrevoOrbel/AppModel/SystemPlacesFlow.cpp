#include "AppModel/SystemPlacesFlow.h"

#include <utility>
#include <vector>

namespace orbel {

SystemPlacesFlow::SystemPlacesFlow(const AppEnvironment& environment, const ScanFlow& scan)
    : environment_(environment), scan_(scan) {
    connect(&scan, &ScanFlow::scanFinished, this, &SystemPlacesFlow::look);
    connect(&scan, &ScanFlow::scanRootChanged, this, [this] {
        job_.drop();
        places_.setRows({});
    });
}

void SystemPlacesFlow::look() {
    if (!scan_.isWholeDisk() || scan_.isPartial() || scan_.isKept() || !scan_.hasTree())
        return;
    job_.run([find = environment_.systemPlaces, home = environment_.home, tree = scan_.tree()](
                 const LatestJob::Run& run) { return find(home, *tree, run.cancellation()); },
             [this](std::vector<SystemPlace> found) {
                 std::vector<FreedPlace> rows;
                 rows.reserve(found.size());
                 for (auto& place : found)
                     rows.push_back({.place = std::move(place)});
                 places_.setRows(std::move(rows));
             });
}

} // namespace orbel

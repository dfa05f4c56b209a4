#include "Commands/GrowthReport.h"

#include "Growth/GrowthStore.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/JsonPath.h"

namespace orbel {

using nlohmann::json;

namespace {

json growthJson(const std::optional<Growth>& growth) {
    json folders = json::array();
    if (!growth)
        return {{"since", nullptr}, {"folders", std::move(folders)}};
    for (const auto& folder : growth->folders) {
        folders.push_back({{"grownBytes", folder.grownBytes}, {"allocatedBytes", folder.bytes}});
        putPath(folders.back(), "path", PathCanonicalizer::shared().visiblePath(folder.path));
    }
    return {{"since", iso8601(growth->since)}, {"folders", std::move(folders)}};
}

} // namespace

GrowthReport growthReport(const ScanResult& result, const UserContext& user) {
    if (const auto& reason = user.policy().homeReason())
        return {.growth = growthJson({}), .failure = reason};
    if (result.cancelled)
        return {.growth = growthJson({}), .failure = "The scan is not complete"};
    const auto kept =
        user.growthStore().keep(result.tree, std::chrono::floor<Date::duration>(result.startedAt));
    return {.growth = growthJson(kept.growth), .failure = kept.failure};
}

} // namespace orbel

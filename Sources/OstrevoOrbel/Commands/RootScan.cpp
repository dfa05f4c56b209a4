#include "Commands/RootScan.h"

#include "Commands/CommandOutput.h"
#include "Commands/Request.h"
#include "Scan/TreeScanner.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>

namespace orbel {

ScanResult scanOfRoot(const Request& request) {
    const ScanCancellation nobodyCancels;
    return TreeScanner::scan(request.operands.front(), std::nullopt, nobodyCancels, nullptr,
                             {.paths = {}, .patterns = request.values(excludeOption.name)});
}

ScanResult scanOfExistingRoot(const Request& request) {
    auto result = scanOfRoot(request);
    if (result.tree.count() > 0)
        return result;
    const auto& root = request.operands.front();
    std::error_code error;
    static_cast<void>(std::filesystem::status(root, error));
    say(root + ": " + (error ? error.message() : "could not be read"));
    finish("", ExitStatus::incomplete);
}

void putExcluded(nlohmann::json& report, const FileTree& tree) {
    if (!tree.exclusions.isEmpty())
        report["excluded"] = {{"count", tree.excludedNodes.size()}, {"patterns", tree.exclusions.patterns}};
}

} // namespace orbel

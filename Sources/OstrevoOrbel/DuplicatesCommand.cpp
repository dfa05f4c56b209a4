#include "DuplicatesCommand.h"

#include "CommandOutput.h"
#include "Find/DuplicateFinder.h"
#include "LaunchOptions.h"
#include "Platform/Home.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/TreeScanner.h"
#include "Util/JsonText.h"

#include <nlohmann/json.hpp>

namespace orbel {

namespace {

using nlohmann::json;

json reportOf(std::span<const DuplicateGroup> groups) {
    json listed = json::array();
    for (const DuplicateGroup& group : groups) {
        json files = json::array();
        for (const DuplicateFile& file : group.files)
            files.push_back(file.path);
        listed.push_back(
            {{"bytes", group.bytes}, {"files", std::move(files)}, {"suggestedKeep", group.suggestedKeep}});
    }
    return {{"groups", std::move(listed)}};
}

} // namespace

void runDuplicatesCommandIfRequested(std::span<const std::string> arguments) {
    const auto root = valueAfter(arguments, "--duplicates-json");
    if (!root)
        return;
    const ScanCancellation nobodyCancels;
    const ScanResult scan = TreeScanner::scan(*root, std::nullopt, nobodyCancels, nullptr);
    const auto home = platform::homeFolder();
    const auto canonicalHome = PathCanonicalizer::shared().canonical(home).value_or(home);
    const auto groups = DuplicateFinder().run(scan.tree, canonicalHome);
    finish(prettyJson(reportOf(groups)) + "\n");
}

} // namespace orbel

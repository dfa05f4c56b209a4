#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Request.h"
#include "Find/DuplicateFinder.h"
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

void run(const Request& request) {
    const ScanCancellation nobodyCancels;
    const ScanResult scan = TreeScanner::scan(request.operands.front(), std::nullopt, nobodyCancels, nullptr);
    const auto home = platform::homeFolder();
    const auto canonicalHome = PathCanonicalizer::shared().canonical(home).value_or(home);
    const auto groups = DuplicateFinder().run(scan.tree, canonicalHome);
    finish(prettyJson(reportOf(groups)) + "\n");
}

} // namespace

constinit const Command duplicatesCommand{
    .name = "--duplicates-json",
    .operands = "ROOT",
    .fewestOperands = 1,
    .isLenient = true,
    .help = "Find the files of 1 MB and more below ROOT, as far as it lies in your home folder, that are the "
            "same in every byte, and print them in groups as JSON, the group that frees most first.",
    .run = run,
};

} // namespace orbel

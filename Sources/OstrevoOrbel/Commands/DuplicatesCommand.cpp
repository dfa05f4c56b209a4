#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Find/DuplicateFinder.h"
#include "Platform/Home.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/SafetyPolicy.h"
#include "Util/Iso8601.h"
#include "Util/JsonPath.h"
#include "Util/JsonText.h"

#include <array>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

using nlohmann::json;

json groupJson(const DuplicateGroup& group) {
    json files = json::array();
    for (const DuplicateFile& file : group.files)
        files.push_back(file.path);
    return {{"bytes", group.bytes}, {"files", std::move(files)}, {"suggestedKeep", group.suggestedKeep}};
}

/// What is known of each copy, and what moving all that may be moved but the suggested one frees: as much as
/// it surely does and at most does.
void addDetails(json& listed, const DuplicateGroup& group, const SafetyPolicy& policy) {
    json copies = json::array();
    std::uint64_t least = 0;
    std::uint64_t most = 0;
    for (const DuplicateFile& file : group.files) {
        const auto item = DuplicateGroup::itemOf(file, policy);
        if (!item) // gone since it was compared
            continue;
        const bool frees = item->isSelectable() && file.path != group.suggestedKeep;
        most += frees ? item->estimatedBytes : 0;
        least += frees && !item->note ? item->estimatedBytes : 0;
        json copy{{"bytesOnDisk", item->estimatedBytes},
                  {"mayShareStorage", file.mayShareStorage()},
                  {"modified", iso8601(file.modified)}};
        putPath(copy, "path", file.path);
        if (item->blockedReason)
            copy["blockedReason"] = *item->blockedReason;
        copies.push_back(std::move(copy));
    }
    listed["copies"] = std::move(copies);
    listed["frees"] = {{"least", least}, {"most", most}};
}

void run(const Request& request) {
    const ScanResult scan = scanOfDisk(request, "--duplicates-json compares contents");
    const auto home = platform::homeFolder();
    const auto canonicalHome = PathCanonicalizer::shared().canonical(home).value_or(home);
    const bool isDetailed = request.has("--details");
    const auto policy = isDetailed ? std::optional<SafetyPolicy>(home) : std::nullopt;
    json report{{"groups", json::array()}};
    putExcluded(report, scan.tree);
    for (const DuplicateGroup& group : DuplicateFinder().run(scan.tree, canonicalHome)) {
        auto& listed = report["groups"].emplace_back(groupJson(group));
        if (policy)
            addDetails(listed, group, *policy);
    }
    if (isDetailed) {
        const auto searched = DuplicateFinder::searchedFolder(scan.tree, canonicalHome);
        report["searched"] = nullptr;
        if (searched)
            putPath(report, "searched", *searched);
    }
    finish(prettyJson(report) + "\n");
}

constexpr std::array options{CommandOption{.name = "--details"}, excludeOption};

} // namespace

constinit const Command duplicatesCommand{
    .name = "--duplicates-json",
    .operands = "ROOT",
    .fewestOperands = 1,
    .options = options,
    .isLenient = true,
    .help = "Find the files of 1 MB and more below ROOT, as far as it lies in your home folder, that are the "
            "same in every byte, and print them in groups as JSON, the group that frees most first. With "
            "--details, also what each copy takes on disk, what moving all but one would free, and which "
            "folder was searched.",
    .run = run,
};

} // namespace orbel

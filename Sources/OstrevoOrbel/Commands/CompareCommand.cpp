#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/CountOption.h"
#include "Commands/ListLimits.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Commands/UserContext.h"
#include "Compare/ScanComparison.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/RealPath.h"
#include "Util/JsonPath.h"
#include "Util/JsonText.h"

#include <array>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

using nlohmann::json;

/// The earlier scan: the one in a file, else the newest that is kept of a root.
RootScan earlierScan(const std::string& root, const Request& request) {
    if (auto file = scanInFile(root, request))
        return *std::move(file);
    const auto walked = RealPath::resolve(root);
    auto kept = walked ? UserContext().scanArchive().newest(*walked, request.values(excludeOption.name))
                       : std::nullopt;
    if (!kept) {
        say(root + ": No scan of it is kept. --scan-json ROOT --growth keeps one, and so does the window");
        finish("", ExitStatus::incomplete);
    }
    return RootScan::ofKept(*std::move(kept));
}

json sideJson(const RootScan& scan) {
    const auto& tree = scan.result.tree;
    auto side = originJson(scan);
    side["entries"] = tree.count();
    side["allocatedBytes"] = tree.allocated(0);
    return side;
}

std::string_view nameOf(ChangeKind kind) {
    constexpr std::array<std::string_view, 5> names{"grew", "shrank", "came", "went", "moved"};
    return names.at(static_cast<std::size_t>(kind));
}

json rowJson(const Change& change, const FileTree& before, const FileTree& after) {
    const auto pathBefore = [&] { return before.path(change.before, PathCanonicalizer::shared()); };
    const bool isGone = change.kind == ChangeKind::went;
    json row{{"change", nameOf(change.kind)},
             {"bytesBefore", bytesBefore(change, before)},
             {"bytesAfter", bytesAfter(change, after)},
             {"isFolder", isGone ? before.isFolder(change.before) : after.isFolder(change.after)}};
    putPath(row, "path", isGone ? pathBefore() : after.path(change.after, PathCanonicalizer::shared()));
    if (change.kind == ChangeKind::moved)
        putPath(row, "pathBefore", pathBefore());
    return row;
}

void run(const Request& request) {
    const auto top = countOf(request, topOption.name);
    const auto& from = request.operands.front();
    const auto& to = request.operands.back();
    const auto earlier = earlierScan(from, request);
    const auto later = scanOfExisting(to, request);
    const auto& before = earlier.result.tree;
    const auto& after = later.result.tree;
    const auto changes = ScanComparison::between(before, after).changes;
    // Row by row: a document of a million of them would take a gigabyte.
    print("{\n  \"from\": " + compactJson(sideJson(earlier)) + ",\n  \"rows\": [");
    std::string_view separator = "\n";
    for (const auto& change :
         std::span(changes).first(std::min<std::uint64_t>(top.value_or(changes.size()), changes.size()))) {
        print(separator);
        print("    " + compactJson(rowJson(change, before, after)));
        separator = ",\n";
    }
    finish("\n  ],\n  \"to\": " + compactJson(sideJson(later)) + "\n}\n");
}

constexpr std::array options{topOption, excludeOption};

} // namespace

constinit const Command compareCommand{
    .name = "--compare-json",
    .operands = "A [B]",
    .fewestOperands = 1,
    .mostOperands = 2,
    .options = options,
    .help =
        "Print as JSON what changed between two scans: what grew, shrank, came, went and moved, the largest "
        "change first, only N of them if given. A and B are scan files or folders: of a folder, A is the "
        "newest scan that was kept with the same exclusions, and B is measured now. Without B, it is A that "
        "is measured now.",
    .run = run,
};

} // namespace orbel

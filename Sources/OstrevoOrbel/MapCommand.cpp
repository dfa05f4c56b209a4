#include "MapCommand.h"

#include "ChangeRequest.h"
#include "CommandOutput.h"
#include "LaunchOptions.h"
#include "Safety/ByteFormat.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/TreeScanner.h"
#include "Scan/VolumeInfo.h"
#include "Util/Iso8601.h"
#include "Util/ParseNumber.h"
#include "Util/ReplaceFile.h"

#include <vector>

namespace orbel {

namespace {

std::optional<MapSvg::Size> sizeIn(const std::string& text) {
    const auto cross = text.find('x');
    if (cross == std::string::npos)
        return std::nullopt;
    const auto width = parseInteger(std::string_view(text).substr(0, cross));
    const auto height = parseInteger(std::string_view(text).substr(cross + 1));
    if (!width || !height)
        return std::nullopt;
    const auto isWithin = [](std::int64_t side, int least, int most) {
        return side >= least && side <= most;
    };
    if (!isWithin(*width, MapSvg::smallest.width, MapSvg::largest.width)
        || !isWithin(*height, MapSvg::smallest.height, MapSvg::largest.height))
        return std::nullopt;
    return MapSvg::Size{.width = static_cast<int>(*width), .height = static_cast<int>(*height)};
}

std::string text(MapSvg::Size size) {
    return std::to_string(size.width) + "x" + std::to_string(size.height);
}

/// "1,284,301"
std::string grouped(std::uint64_t number) {
    std::string digits = std::to_string(number);
    for (std::size_t place = digits.size(); place > 3;) {
        place -= 3;
        digits.insert(place, ",");
    }
    return digits;
}

std::string remarkOn(const ScanResult& result) {
    const FileTree& tree = result.tree;
    std::string remark = ByteFormat::string(tree.allocated(0)) + " · " + grouped(tree.count()) + " entries";
    if (tree.unreadableCount > 0)
        remark += " · " + grouped(tree.unreadableCount) + " could not be read";
    return remark + " · measured " + iso8601(std::chrono::floor<std::chrono::microseconds>(result.startedAt));
}

std::optional<Coverage> coverageOf(const FileTree& tree) {
    const auto volumePath = VolumeInfo::dataVolumePath();
    const auto volume = tree.rootPath == volumePath ? VolumeInfo::read(volumePath) : std::nullopt;
    return volume ? std::optional(Coverage(volume->used, tree)) : std::nullopt;
}

} // namespace

std::expected<std::optional<MapRequest>, std::string> mapRequestIn(std::span<const std::string> arguments) {
    const auto words = arguments.subspan(arguments.empty() ? 0 : 1);
    const auto switches = switchesIn(words);
    if (!contains(switches, "--map-svg"))
        return std::nullopt;

    MapRequest request;
    std::vector<std::string> operands;
    bool isAfterCommand = false;
    bool hasSize = false;
    for (std::size_t i = 0; i < switches.size(); ++i) {
        const std::string& word = switches[i];
        if (word == "--map-svg" && !isAfterCommand) {
            isAfterCommand = true;
        } else if (word == "--size" && !hasSize) {
            hasSize = true;
            const auto size = i + 1 < switches.size() ? sizeIn(switches[++i]) : std::nullopt;
            if (!size)
                return std::unexpected("--size takes a width and a height in pixels, from "
                                       + text(MapSvg::smallest) + " to " + text(MapSvg::largest));
            request.size = *size;
        } else if (word.starts_with('-')) {
            return std::unexpected("\"" + word + "\" does not go together with --map-svg");
        } else if (!isAfterCommand) {
            return std::unexpected("\"" + word + "\" stands before --map-svg");
        } else {
            operands.push_back(word);
        }
    }
    if (switches.size() < words.size()) {
        const auto rest = words.subspan(switches.size() + 1);
        operands.insert(operands.end(), rest.begin(), rest.end());
    }
    if (operands.size() != 2 || operands[0].empty() || operands[1].empty())
        return std::unexpected("--map-svg takes a ROOT to measure and a FILE to write");
    request.root = operands[0];
    request.file = operands[1];
    return request;
}

void runMapCommandIfRequested(std::span<const std::string> arguments) {
    const auto asked = mapRequestIn(arguments);
    if (!asked)
        finishWrongUsage(asked.error());
    const auto& request = *asked;
    if (!request)
        return;

    const ScanCancellation nobodyCancels;
    const ScanResult result = TreeScanner::scan(request->root, std::nullopt, nobodyCancels, nullptr);
    const FileTree& tree = result.tree;
    if (tree.count() == 0 || !tree.isFolder(0)) {
        say(request->root + (tree.count() == 0 ? ": could not be read" : ": is not a folder"));
        finish("", ExitStatus::incomplete);
    }
    const auto picture = MapSvg::render({.tree = tree,
                                         .coverage = coverageOf(tree),
                                         .title = tree.path(0, PathCanonicalizer::shared()),
                                         .remark = remarkOn(result),
                                         .size = request->size});
    if (const auto written = replaceFile(request->file, picture); !written) {
        say(request->file + ": " + written.error());
        finish("", ExitStatus::incomplete);
    }
    finish("");
}

} // namespace orbel

#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Request.h"
#include "Commands/RootScan.h"
#include "Export/MapSvg.h"
#include "Safety/ByteFormat.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/VolumeInfo.h"
#include "Util/Iso8601.h"
#include "Util/ParseNumber.h"

#include <array>
#include <optional>
#include <string>

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

MapSvg::Size requestedSize(const Request& request) {
    const auto given = request.value("--size");
    const auto size = given ? sizeIn(*given) : MapSvg::Size();
    if (!size)
        finishWrongUsage("--size takes a width and a height in pixels, from " + text(MapSvg::smallest)
                         + " to " + text(MapSvg::largest));
    return *size;
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

std::string remarkOn(const RootScan& scan) {
    const FileTree& tree = scan.result.tree;
    std::string remark = ByteFormat::string(tree.allocated(0)) + " · " + grouped(tree.count()) + " entries";
    if (tree.unreadableCount > 0)
        remark += " · " + grouped(tree.unreadableCount) + " could not be read";
    if (!tree.excludedNodes.empty())
        remark += " · " + grouped(tree.excludedNodes.size()) + " left out";
    const auto measuredAt = scan.measuredAt();
    return measuredAt ? remark + " · measured " + iso8601(*measuredAt) : remark;
}

std::optional<Coverage> coverageOf(const RootScan& scan) {
    const FileTree& tree = scan.result.tree;
    const auto volume = tree.rootPath == VolumeInfo::dataVolumePath() ? scan.volume() : std::nullopt;
    return volume ? std::optional(Coverage(volume->used, tree)) : std::nullopt;
}

void run(const Request& request) {
    const auto size = requestedSize(request);
    const auto& root = request.operands.front();
    const auto& file = request.operands.back();
    const auto scan = scanOfExistingRoot(request);
    const FileTree& tree = scan.result.tree;
    if (!tree.isFolder(0)) {
        say(root + ": is not a folder");
        finish("", ExitStatus::incomplete);
    }
    const auto picture = MapSvg::render({.tree = tree,
                                         .coverage = coverageOf(scan),
                                         .title = tree.path(0, PathCanonicalizer::shared()),
                                         .remark = remarkOn(scan),
                                         .size = size});
    finishInto(file, picture);
}

constexpr std::array options{CommandOption{.name = "--size", .takes = "WxH"}, excludeOption};

} // namespace

constinit const Command mapCommand{
    .name = "--map-svg",
    .operands = "ROOT FILE",
    .fewestOperands = 2,
    .options = options,
    .help =
        "Measure the folder ROOT, or take the scan in the file ROOT, and draw its map into FILE as an SVG "
        "picture of W by H pixels (1440x900 unless given). An existing FILE is replaced, and only by a "
        "complete one; \"-\" is standard output.",
    .run = run,
};

} // namespace orbel

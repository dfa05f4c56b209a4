#include "Saved/ScanFile.h"

#include "Platform/Whereabouts.h"
#include "Saved/ByteStream.h"
#include "Saved/Compression.h"
#include "Saved/FrameFile.h"
#include "Saved/TreeBlocks.h"
#include "Util/AppVersion.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <ranges>

namespace orbel {

namespace {

constexpr std::size_t longestText = 1024 * 1024;
constexpr std::size_t mostTexts = 1024 * 1024;
/// Trees of more nodes are not compressed further than this, so that no small file claims all memory.
constexpr std::size_t fewNodes = 16 * 1024 * 1024;
constexpr std::size_t mostNodesPerByte = 64;

void writeTexts(ByteWriter& writer, const std::vector<std::string>& texts) {
    writer.number(texts.size());
    for (const auto& text : texts)
        writer.text(text);
}

std::vector<std::string> readTexts(ByteReader& reader) {
    std::vector<std::string> texts;
    for (auto left = reader.numberUpTo(mostTexts); left > 0 && !reader.hasFailed(); --left)
        texts.push_back(reader.text(longestText));
    return texts;
}

void writeOrigin(ByteWriter& writer, const ScanOrigin& origin) {
    writer.difference(static_cast<std::uint64_t>(origin.measuredAt.time_since_epoch().count()), 0);
    writer.number(std::bit_cast<std::uint64_t>(origin.duration));
    for (const auto* text : {&origin.machine, &origin.user, &origin.program})
        writer.text(*text);
    writer.number(origin.volume ? 1 : 0);
    const auto volume = origin.volume.value_or(VolumeInfo());
    for (const auto bytes : {volume.total, volume.free, volume.used, volume.availableForImportantUsage})
        writer.number(bytes);
    writer.number(origin.usedSpace ? 1 : 0);
    writer.number(origin.usedSpace.value_or(0));
}

ScanOrigin readOrigin(ByteReader& reader) {
    ScanOrigin origin;
    origin.measuredAt = Date(Date::duration(static_cast<std::int64_t>(reader.difference(0))));
    origin.duration = std::bit_cast<double>(reader.number());
    for (auto* text : {&origin.machine, &origin.user, &origin.program})
        *text = reader.text(longestText);
    const bool hasVolume = reader.numberUpTo(1) == 1;
    VolumeInfo volume;
    for (auto* bytes : {&volume.total, &volume.free, &volume.used, &volume.availableForImportantUsage})
        *bytes = reader.number();
    if (hasVolume)
        origin.volume = volume;
    const bool hasUsedSpace = reader.numberUpTo(1) == 1;
    const auto usedSpace = reader.number();
    if (hasUsedSpace)
        origin.usedSpace = usedSpace;
    return origin;
}

/// What few nodes have besides the columns. `Numbers` are pairs of a place and a value, by place.
using Numbers = std::vector<std::pair<NodeIndex, std::uint64_t>>;

Numbers placed(const auto& numbers, const KeptOrder& order) {
    Numbers found;
    for (const auto& [node, value] : numbers)
        if (order.places[node] != FileTree::noParent)
            found.emplace_back(order.places[node], value);
    std::ranges::sort(found);
    return found;
}

Numbers placedNodes(const std::unordered_set<NodeIndex>& nodes, const KeptOrder& order) {
    Numbers found;
    for (const NodeIndex node : nodes)
        if (order.places[node] != FileTree::noParent)
            found.emplace_back(order.places[node], 0);
    std::ranges::sort(found);
    return found;
}

void writeNumbers(ByteWriter& writer, const Numbers& numbers) {
    writer.number(numbers.size());
    NodeIndex last = 0;
    for (const auto& [place, value] : numbers) {
        writer.number(place - last);
        writer.number(value);
        last = place;
    }
}

Numbers readNumbers(ByteReader& reader, std::size_t nodes, std::uint64_t largest) {
    Numbers numbers;
    std::uint64_t place = 0;
    for (auto left = reader.numberUpTo(nodes); left > 0 && !reader.hasFailed(); --left) {
        place += reader.numberUpTo(nodes - 1 - place);
        numbers.emplace_back(static_cast<NodeIndex>(place), reader.numberUpTo(largest));
    }
    return numbers;
}

void writeTree(ByteWriter& writer, const FileTree& tree, const KeptOrder& order) {
    writer.number(order.nodes.size());
    writer.text(tree.rootPath);
    writer.text(tree.requestedRootPath);
    writeTexts(writer, tree.exclusions.paths);
    writeTexts(writer, tree.exclusions.patterns);
    for (const auto number :
         {tree.device, tree.unreadableCount, tree.datalessCount, tree.otherVolumeCount, tree.allocated(0)})
        writer.number(number);
    writeNumbers(writer, placedNodes(tree.aliasNodes, order));
    writeNumbers(writer, placedNodes(tree.excludedNodes, order));
    writeNumbers(writer, placed(tree.otherDevices, order));
    writeNumbers(writer, placed(tree.unlistedEntries, order));
}

bool isPath(std::string_view path) {
    return path.starts_with('/') && !path.contains('\0');
}

/// What writeTree() wrote.
struct TreeHeader {
    FileTree tree; ///< without nodes
    std::size_t nodes = 0;
    std::uint64_t allocatedBytes = 0; ///< of all

    explicit TreeHeader(ByteReader& reader) : nodes(reader.numberUpTo(FileTree::noParent - 1)) {
        tree.rootPath = reader.text(longestText);
        tree.requestedRootPath = reader.text(longestText);
        tree.exclusions.paths = readTexts(reader);
        tree.exclusions.patterns = readTexts(reader);
        for (auto* number : {&tree.device, &tree.unreadableCount, &tree.datalessCount, &tree.otherVolumeCount,
                             &allocatedBytes})
            *number = reader.number();
        if (nodes == 0)
            return;
        constexpr auto any = std::numeric_limits<std::uint64_t>::max();
        for (const auto& [node, nothing] : readNumbers(reader, nodes, 0))
            tree.aliasNodes.insert(node);
        for (const auto& [node, nothing] : readNumbers(reader, nodes, 0))
            tree.excludedNodes.insert(node);
        for (const auto& [node, device] : readNumbers(reader, nodes, any))
            tree.otherDevices[node] = device;
        for (const auto& [node, entries] :
             readNumbers(reader, nodes, std::numeric_limits<std::uint32_t>::max()))
            tree.unlistedEntries[node] = static_cast<std::uint32_t>(entries);
    }

    bool isSound() const { return nodes > 0 && isPath(tree.rootPath); }
};

/// The first part of a scan file.
struct FirstPart {
    ScanOrigin origin;
    TreeHeader header;

    /// Absent when it is damaged.
    static std::optional<FirstPart> of(const Frame& part) {
        const auto text = unpacked(part);
        if (!text)
            return std::nullopt;
        ByteReader reader(*text);
        auto origin = readOrigin(reader);
        FirstPart read{.origin = std::move(origin), .header = TreeHeader(reader)};
        const bool isOne = reader.isAtEnd() && read.origin.isSound() && read.header.isSound()
                           && read.header.allocatedBytes <= mostScanBytes;
        return isOne ? std::optional(std::move(read)) : std::nullopt;
    }
};

/// What the nodes say has to agree with what the header said.
bool agrees(const FileTree& tree, std::uint64_t allocatedBytes) {
    const auto isOf = [&](NodeIndex node, NodeFlags flags) { return tree.flags(node).contains(flags); };
    return tree.allocated(0) == allocatedBytes
           && std::ranges::all_of(tree.excludedNodes,
                                  [&](NodeIndex node) { return isOf(node, NodeFlags::otherVolume); })
           && std::ranges::all_of(tree.unlistedEntries | std::views::keys,
                                  [&](NodeIndex node) { return isOf(node, NodeFlags::folder); })
           && std::ranges::none_of(tree.otherDevices | std::views::keys,
                                   [&](NodeIndex node) { return isOf(node, NodeFlags::folder); });
}

} // namespace

bool ScanOrigin::isSound(Date date) {
    constexpr std::int64_t farthest = std::int64_t{1} << 53U;
    const auto sinceEpoch = std::int64_t{date.time_since_epoch().count()};
    return sinceEpoch >= -farthest && sinceEpoch <= farthest;
}

bool ScanOrigin::isSound() const {
    constexpr double longest = 1e8; // seconds
    const auto figures = volume.value_or(VolumeInfo());
    return isSound(measuredAt) && duration >= 0 && duration <= longest && figures.total <= mostScanBytes
           && figures.free <= mostScanBytes && figures.used <= mostScanBytes
           && std::max({machine.size(), user.size(), program.size()}) <= longestText;
}

ScanOrigin ScanOrigin::ofHere(const ScanResult& result) {
    ScanOrigin origin{.measuredAt = std::chrono::floor<Date::duration>(result.startedAt),
                      .duration = result.duration,
                      .machine = platform::machineName(),
                      .user = platform::userName(),
                      .program = appVersion(),
                      .volume = VolumeInfo::read(result.tree.rootPath),
                      .usedSpace = VolumeInfo::spaceUsed(result.tree.rootPath)};
    // Storage in a network may claim to be endless.
    if (!origin.isSound())
        origin.volume.reset();
    return origin;
}

std::string scanFileBytes(const FileTree& tree, const ScanOrigin& origin) {
    const KeptOrder order(tree);
    ByteWriter header;
    writeOrigin(header, origin);
    writeTree(header, tree, order);
    auto parts = TreeBlocks::of(tree, order);
    parts.insert(parts.begin(), packed(header.bytes()));
    return FrameFile::bytesOf(parts);
}

bool looksLikeScanFile(std::string_view beginning) {
    return FrameFile::isBegunBy(beginning);
}

std::expected<KeptScan, std::string> scanFromFile(std::string_view bytes) {
    const auto parts = FrameFile::partsOf(bytes);
    if (!parts)
        return std::unexpected(parts.error());
    auto first = parts->empty() ? std::nullopt : FirstPart::of(parts->front());
    if (!first || first->header.nodes > std::max(fewNodes, bytes.size() * mostNodesPerByte)
        || !TreeBlocks::read(std::span(*parts).subspan(1), first->header.nodes, first->header.tree)
        || !agrees(first->header.tree, first->header.allocatedBytes))
        return std::unexpected(std::string(FrameFile::damaged));
    return KeptScan{.tree = std::move(first->header.tree), .origin = std::move(first->origin)};
}

std::optional<ScanHeader> scanHeaderIn(std::string_view beginning) {
    const auto part = FrameFile::firstPartIn(beginning);
    auto first = part ? FirstPart::of(*part) : std::nullopt;
    if (!first)
        return std::nullopt;
    auto& [origin, header] = *first;
    return ScanHeader{.origin = std::move(origin),
                      .root = std::move(header.tree.rootPath),
                      .exclusions = std::move(header.tree.exclusions),
                      .entries = header.nodes,
                      .allocatedBytes = header.allocatedBytes};
}

} // namespace orbel

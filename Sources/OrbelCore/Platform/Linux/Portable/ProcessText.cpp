#include "Platform/Linux/Portable/ProcessText.h"

#include <algorithm>
#include <charconv>

namespace orbel::platform {

namespace {

std::string_view takeField(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const auto field = line.substr(0, line.find(' '));
    line.remove_prefix(field.size());
    return field;
}

std::optional<std::uint64_t> numberIn(std::string_view field, int base) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value, base);
    if (error != std::errc{} || end != field.data() + field.size())
        return std::nullopt;
    return value;
}

/// A device number as `stat` would give it, from "major:minor" in hexadecimal.
std::optional<std::uint64_t> deviceIn(std::string_view field) {
    const auto colon = field.find(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    const auto major = numberIn(field.substr(0, colon), 16);
    const auto minor = numberIn(field.substr(colon + 1), 16);
    if (!major || !minor)
        return std::nullopt;
    return ((*minor & 0xFF) | (*major << 8) | ((*minor & ~std::uint64_t{0xFF}) << 12)) & 0xFFFFFFFF;
}

std::optional<MappedFile> parseLine(std::string_view line) {
    // range rights offset device inode path
    MappedFile mapped{.range = takeField(line)};
    takeField(line);
    takeField(line);
    const auto device = deviceIn(takeField(line));
    const auto inode = numberIn(takeField(line), 10);
    const auto slash = line.find('/');
    if (!device || !inode || *inode == 0 || slash == std::string_view::npos
        || line.find_first_not_of(' ') != slash)
        return std::nullopt;
    mapped.device = *device;
    mapped.inode = *inode;
    mapped.path = line.substr(slash);
    return mapped;
}

std::optional<BoundSocket> parseSocket(std::string_view line) {
    // number: references protocol flags type state inode path
    for (int field = 0; field < 3; ++field)
        takeField(line);
    const auto flags = numberIn(takeField(line), 16);
    const auto type = takeField(line);
    takeField(line);
    const auto inode = numberIn(takeField(line), 10);
    constexpr std::uint64_t waitsForConnections = 0x00010000; // __SO_ACCEPTCON
    constexpr std::string_view takesMessages = "0002";        // SOCK_DGRAM
    if (!flags || !inode || !line.starts_with(" /")
        || ((*flags & waitsForConnections) == 0 && type != takesMessages))
        return std::nullopt;
    return BoundSocket{.inode = *inode, .path = line.substr(1)};
}

} // namespace

std::optional<ProcessState> parseProcessState(std::string_view text) {
    // pid (name) state parent group session terminal terminal-group flags …; a name may contain anything
    const auto open = text.find('(');
    const auto close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return std::nullopt;
    auto rest = text.substr(close + 1);
    const auto state = takeField(rest);
    for (int field = 0; field < 5; ++field)
        takeField(rest);
    const auto flags = numberIn(takeField(rest), 10);
    if (!flags)
        return std::nullopt;
    constexpr std::uint64_t kernelThread = 0x00200000; // PF_KTHREAD
    return ProcessState{.name = std::string(text.substr(open + 1, close - open - 1)),
                        .isKernelThread = (*flags & kernelThread) != 0,
                        .isEnded = state == "Z" || state == "X"};
}

void forEachMappedFile(std::string_view maps, const std::function<void(const MappedFile&)>& use) {
    MappedFile last;
    const auto isLast = [&](const MappedFile& mapped) {
        return mapped.inode == last.inode && mapped.device == last.device && mapped.path == last.path;
    };
    while (!maps.empty()) {
        const auto end = std::min(maps.find('\n'), maps.size());
        if (const auto mapped = parseLine(maps.substr(0, end)); mapped && !isLast(*mapped)) {
            last = *mapped;
            use(last);
        }
        maps.remove_prefix(std::min(end + 1, maps.size()));
    }
}

void forEachBoundSocket(std::string_view sockets, const std::function<void(const BoundSocket&)>& use) {
    while (!sockets.empty()) {
        const auto end = std::min(sockets.find('\n'), sockets.size());
        if (const auto bound = parseSocket(sockets.substr(0, end)))
            use(*bound);
        sockets.remove_prefix(std::min(end + 1, sockets.size()));
    }
}

std::optional<std::uint64_t> socketInode(std::string_view link) {
    constexpr std::string_view beginning = "socket:[";
    if (!link.starts_with(beginning) || !link.ends_with(']'))
        return std::nullopt;
    return numberIn(link.substr(beginning.size(), link.size() - beginning.size() - 1), 10);
}

} // namespace orbel::platform

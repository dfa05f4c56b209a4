#pragma once

#include "Scan/ScanResult.h"
#include "Scan/VolumeInfo.h"
#include "Util/Iso8601.h"

#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// More bytes than any volume has, and few enough to be taken from one another: what claims more is not
/// believed, wherever it comes from.
constexpr std::uint64_t mostScanBytes = std::uint64_t{1} << 62U;

/// Where and when a scan was made; texts are empty where that is not known.
struct ScanOrigin {
    Date measuredAt{};                        ///< when it began; the begin of 1970 when that is not known
    double duration = 0;                      ///< seconds
    std::string machine;                      ///< the name of the host
    std::string user;                         ///< who scanned
    std::string program;                      ///< the version that scanned, or another program with its own
    std::optional<VolumeInfo> volume{};       ///< as the volume was then
    std::optional<std::uint64_t> usedSpace{}; ///< as VolumeInfo::spaceUsed() said then

    bool operator==(const ScanOrigin&) const = default;

    /// Whether the system's clock has such a time; differences of two can then be taken.
    static bool isSound(Date date);
    /// Whether the figures are some that a volume can have, the times some that a clock has, and the texts
    /// not endless: the only ones that a scan file is believed with.
    bool isSound() const;
    /// Of a scan that ended just now, here. Asks the system about its volume; figures that no volume can have
    /// are left out.
    static ScanOrigin ofHere(const ScanResult& result);
};

/// What a scan file says of itself before its nodes. A plain value.
struct ScanHeader {
    ScanOrigin origin;
    std::string root; ///< FileTree::rootPath
    Exclusions exclusions{};
    std::uint64_t entries = 0;        ///< the root included
    std::uint64_t allocatedBytes = 0; ///< of all

    bool operator==(const ScanHeader&) const = default;
};

/// A scan that was kept. What it says was true then: it proves nothing about the disk of today, and
/// everything that is moved is measured and checked anew.
struct KeptScan {
    FileTree tree;
    ScanOrigin origin;
};

/// A complete scan as the bytes of a file, which docs/scan-format.md describes: names as raw bytes, the order
/// of each child list kept, all compressed and with check sums. Detached nodes are left out. Needs
/// a tree with a root. Uses several threads.
std::string scanFileBytes(const FileTree& tree, const ScanOrigin& origin);

/// Whether bytes, the first ones of a file at least, are those of such a file, whole or not.
bool looksLikeScanFile(std::string_view beginning);

/// Reads what scanFileBytes() wrote, from any bytes; the finished tree takes the memory that its scan took.
/// The error says in words for people why the bytes are not believed: no part of them is then used.
std::expected<KeptScan, std::string> scanFromFile(std::string_view bytes);

/// The header alone, from the first bytes of a file: absent when they do not reach so far, and for what
/// is no scan file. That the nodes agree with it is only known once they are read.
std::optional<ScanHeader> scanHeaderIn(std::string_view beginning);

} // namespace orbel

#pragma once

#include "Commands/Command.h"
#include "Saved/ScanFile.h"
#include "Scan/ScanCancellation.h"
#include "Scan/ScanProgress.h"

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>

namespace orbel {

/// The option of every command that measures its first operand, ROOT.
inline constexpr CommandOption excludeOption{.name = "--exclude", .takes = "PATTERN", .isRepeatable = true};

/// A scan, and where it comes from when it was not made just now.
struct RootScan {
    ScanResult result;
    std::optional<ScanOrigin> keptOrigin; ///< of a scan file or an export

    static RootScan ofKept(KeptScan kept);

    /// The figures of the volume at the time of the scan.
    std::optional<VolumeInfo> volume() const {
        return keptOrigin ? keptOrigin->volume : VolumeInfo::read(result.tree.requestedRootPath);
    }

    /// When it was made; absent when the file does not say so.
    std::optional<Date> measuredAt() const;
};

/// What goes on beside a scan. A scan file is read without either.
struct ScanWatch {
    const ScanCancellation* cancellation = nullptr; ///< stops the scan; outlives it
    ScanProgressCallback progress{};                ///< hears of it every 0.25 seconds
};

/// Measures the ROOT of a command without what the request excludes, or takes the scan that is in a scan
/// file or an export in its place. Ends the process when such a file is not to be believed.
RootScan scanOfRoot(const Request& request);

/// The same for one of several operands.
RootScan scanOf(const std::string& root, const Request& request, const ScanWatch& watch = {});

/// The scan in a scan file or an export; absent for other files. Ends the process when it is damaged.
std::optional<RootScan> scanInFile(const std::string& path, const Request& request);

/// Measures the ROOT of a command that has to look at the disk besides the scan. A file with a scan in it is
/// wrong usage, and `need` says why: "--duplicates-json compares contents".
ScanResult scanOfDisk(const Request& request, std::string_view need);

/// As scanOfRoot(). When nothing can be measured, says why on standard error and ends the process as
/// incomplete: an empty list would read as "nothing found".
RootScan scanOfExistingRoot(const Request& request);
/// The same as scanOfDisk().
ScanResult scanOfExistingDisk(const Request& request, std::string_view need);

RootScan scanOfExisting(const std::string& root, const Request& request, const ScanWatch& watch = {});

/// Where and when a scan was made, and of what, as far as that is known.
nlohmann::json originJson(const RootScan& scan);

/// Of a scan that was kept, where and when it was made, as far as that is known; else nothing.
void putKeptScan(nlohmann::json& report, const RootScan& scan);

/// How many entries were left out of a scan that was told to leave some out; else nothing.
void putExcluded(nlohmann::json& report, const FileTree& tree);

} // namespace orbel

#pragma once

#include "Commands/Command.h"
#include "Saved/ScanFile.h"

#include <nlohmann/json_fwd.hpp>
#include <optional>

namespace orbel {

/// The option of every command that measures its first operand, ROOT.
inline constexpr CommandOption excludeOption{.name = "--exclude", .takes = "PATTERN", .isRepeatable = true};

/// A scan, and where it comes from when it was not made just now.
struct RootScan {
    ScanResult result;
    std::optional<ScanOrigin> keptOrigin; ///< of a scan file

    static RootScan ofKept(KeptScan kept);

    /// The figures of the volume at the time of the scan.
    std::optional<VolumeInfo> volume() const {
        return keptOrigin ? keptOrigin->volume : VolumeInfo::read(result.tree.requestedRootPath);
    }
};

/// Measures the ROOT of a command without what the request excludes, or takes the scan that is in a scan
/// file in its place. Ends the process when such a file is not to be believed.
RootScan scanOrFileOfRoot(const Request& request);

/// The same for one of several operands.
RootScan scanOrFileOf(const std::string& root, const Request& request);

/// The scan in a scan file; absent for all that is none. Ends the process when it is not to be believed.
std::optional<RootScan> scanInFile(const std::string& path, const Request& request);

/// Measures the ROOT of a command that has to look at the disk besides the scan: a scan file is measured like
/// any other file.
ScanResult scanOfRoot(const Request& request);

// When nothing can be measured, these say why on standard error and end the process as incomplete: an empty
// list would read as "nothing found".

RootScan scanOrFileOfExistingRoot(const Request& request);
RootScan scanOrFileOfExisting(const std::string& root, const Request& request);
ScanResult scanOfExistingRoot(const Request& request);

/// How many entries were left out of a scan that was told to leave some out; else nothing.
void putExcluded(nlohmann::json& report, const FileTree& tree);

} // namespace orbel

#pragma once

#include "Commands/Command.h"
#include "Scan/ScanResult.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace orbel {

/// The option of every command that measures its first operand, ROOT.
inline constexpr CommandOption excludeOption{.name = "--exclude", .takes = "PATTERN", .isRepeatable = true};

/// Measures the ROOT of a command, without what the request excludes.
ScanResult scanOfRoot(const Request& request);
/// The same. When nothing can be measured there, says why on standard error and ends the process as
/// incomplete: an empty list would read as "nothing found".
ScanResult scanOfExistingRoot(const Request& request);

/// How many entries were left out of a scan that was told to leave some out; else nothing.
void putExcluded(nlohmann::json& report, const FileTree& tree);

} // namespace orbel

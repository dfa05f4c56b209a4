#pragma once

#include "Commands/UserContext.h"
#include "Scan/ScanResult.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

namespace orbel {

/// What `--growth` adds to the report of a scan.
struct GrowthReport {
    nlohmann::json growth;              ///< under the key "growth"
    std::optional<std::string> failure; ///< why the scan is not kept for the next one, for the user
};

/// Compares a finished scan with the newest kept one of the same root and exclusions, and keeps it.
GrowthReport growthReport(const ScanResult& result, const UserContext& user);

} // namespace orbel

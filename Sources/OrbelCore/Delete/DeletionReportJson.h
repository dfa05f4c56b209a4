#pragma once

#include <nlohmann/json_fwd.hpp>

namespace orbel {

struct DeletionReport;

// A report as a JSON object; the dates are as iso8601() writes them, and `journalFailure` is left out when
// absent. Reading throws nlohmann::json::exception when one of the nine other keys is missing or a value is
// not of its type; the target may then be half filled.

void to_json(nlohmann::json& object, const DeletionReport& report);
void from_json(const nlohmann::json& object, DeletionReport& report);

} // namespace orbel

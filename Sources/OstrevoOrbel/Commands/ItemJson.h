#pragma once

#include <nlohmann/json_fwd.hpp>

namespace orbel {

struct DeletionItem;

/// What every list says of a row's item, as a JSON object: "path" and "preselected", and where there is one
/// the "blockedReason" and the "note".
nlohmann::json itemJson(const DeletionItem& item);

} // namespace orbel

#pragma once

#include <nlohmann/json_fwd.hpp>

namespace orbel {

struct DeletionItem;
struct KeptCopy;

// Kept copies and deletion items as JSON objects: every key is the name of a field, except that the item's
// path is the file URL "url"; absent fields are left out. `preselected` is not stored: an item that was
// read is never ticked. Reading throws nlohmann::json::exception for malformed input; the target may then
// be half filled.

void to_json(nlohmann::json& object, const KeptCopy& keep);
void from_json(const nlohmann::json& object, KeptCopy& keep);
void to_json(nlohmann::json& object, const DeletionItem& item);
void from_json(const nlohmann::json& object, DeletionItem& item);

} // namespace orbel

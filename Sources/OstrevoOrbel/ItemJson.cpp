#include "ItemJson.h"

#include "Delete/DeletionItem.h"

#include <nlohmann/json.hpp>

namespace orbel {

nlohmann::json itemJson(const DeletionItem& item) {
    nlohmann::json json{{"path", item.path}, {"preselected", item.preselected}};
    if (item.blockedReason)
        json["blockedReason"] = *item.blockedReason;
    if (item.note)
        json["note"] = *item.note;
    return json;
}

} // namespace orbel

#include "Commands/ItemJson.h"

#include "Delete/DeletionItem.h"
#include "Util/JsonPath.h"

#include <nlohmann/json.hpp>

namespace orbel {

nlohmann::json itemJson(const DeletionItem& item) {
    nlohmann::json json{{"preselected", item.preselected}};
    putPath(json, "path", item.path);
    if (item.blockedReason)
        json["blockedReason"] = *item.blockedReason;
    if (item.note)
        json["note"] = *item.note;
    return json;
}

} // namespace orbel

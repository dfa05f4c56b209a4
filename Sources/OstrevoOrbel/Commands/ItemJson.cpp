#include "Commands/ItemJson.h"

#include "Delete/Advice.h"
#include "Delete/DeletionItem.h"
#include "Util/JsonPath.h"

#include <nlohmann/json.hpp>
#include <utility>

namespace orbel {

nlohmann::json itemJson(const DeletionItem& item) {
    nlohmann::json json{{"preselected", item.preselected}};
    putPath(json, "path", item.path);
    if (item.blockedReason) {
        json["blockedReason"] = *item.blockedReason;
        putAdvice(json, *item.blockedReason);
    }
    if (item.note)
        json["note"] = *item.note;
    return json;
}

void putAdvice(nlohmann::json& object, std::string_view reason) {
    if (auto advice = adviceOn(reason))
        object["advice"] = *std::move(advice);
}

} // namespace orbel

#include "Commands/ItemJson.h"

#include "Delete/Advice.h"
#include "Delete/DeletionItem.h"
#include "Delete/ManageHint.h"
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
        putCommand(json, item.path, *item.blockedReason);
    }
    if (item.note)
        json["note"] = *item.note;
    return json;
}

void putAdvice(nlohmann::json& object, std::string_view reason) {
    if (auto advice = adviceOn(reason))
        object["advice"] = *std::move(advice);
}

void putCommand(nlohmann::json& object, const std::string& path, std::string_view reason) {
    if (auto hint = ManageHint::of(path); hint && hint->isShownAs(reason) && !hint->command.empty())
        object["command"] = std::move(hint->command);
}

} // namespace orbel

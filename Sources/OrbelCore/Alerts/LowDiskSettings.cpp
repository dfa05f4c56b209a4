#include "Alerts/LowDiskSettings.h"

#include "Util/StrictJson.h"

#include <nlohmann/json.hpp>

namespace orbel {

LowDiskSettings LowDiskSettings::fromText(std::string_view text) {
    try {
        return nlohmann::json::parse(text).get<LowDiskSettings>();
    } catch (const nlohmann::json::exception&) {
        return {};
    }
}

void to_json(nlohmann::json& json, const LowDiskSettings& settings) {
    json = {{"enabled", settings.enabled}, {"threshold", settings.threshold}};
}

void from_json(const nlohmann::json& json, LowDiskSettings& settings) {
    settings = {.enabled = booleanAt(json, "enabled"), .threshold = unsignedAt(json, "threshold")};
}

} // namespace orbel

#include "Util/JsonText.h"

#include <nlohmann/json.hpp>

namespace orbel {

namespace {
constexpr auto replaceBadUtf8 = nlohmann::json::error_handler_t::replace;
}

std::string prettyJson(const nlohmann::json& json) {
    return json.dump(2, ' ', false, replaceBadUtf8);
}

std::string compactJson(const nlohmann::json& json) {
    return json.dump(-1, ' ', false, replaceBadUtf8);
}

} // namespace orbel

#include "Util/JsonText.h"

#include <nlohmann/json.hpp>

namespace orbel {

using nlohmann::json;

std::string prettyJson(const json& value) {
    return value.dump(2, ' ', false, json::error_handler_t::replace);
}

std::string compactJson(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace orbel

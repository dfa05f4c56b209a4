#include "Util/JsonPath.h"

#include "Util/Base64.h"
#include "Util/Utf8.h"

#include <nlohmann/json.hpp>

namespace orbel {

void putPath(nlohmann::json& object, const std::string& key, std::string_view path) {
    object[key] = path;
    if (!isValidUtf8(path))
        object[key + "Bytes"] = base64(path);
}

} // namespace orbel

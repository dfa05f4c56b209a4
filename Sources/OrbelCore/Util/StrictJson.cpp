#include "Util/StrictJson.h"

#include <limits>
#include <nlohmann/json.hpp>

namespace orbel {

using nlohmann::json;

const std::string& textAt(const json& object, const char* key) {
    return object.at(key).get_ref<const std::string&>();
}

std::uint64_t unsignedAt(const json& object, const char* key) {
    const auto& value = object.at(key);
    if (!value.is_number_unsigned())
        rejectMember(object, key);
    return value.get<std::uint64_t>();
}

std::int64_t signedAt(const json& object, const char* key) {
    const auto& value = object.at(key);
    if (!value.is_number_integer()
        || (value.is_number_unsigned()
            && value.get<std::uint64_t>()
                   > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())))
        rejectMember(object, key);
    return value.get<std::int64_t>();
}

bool booleanAt(const json& object, const char* key) {
    return object.at(key).get_ref<const bool&>();
}

Date dateAt(const json& object, const char* key) {
    const auto date = parseIso8601(textAt(object, key));
    if (!date)
        rejectMember(object, key);
    return *date;
}

const json* optionalAt(const json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() || found->is_null() ? nullptr : &*found;
}

void rejectMember(const json& object, const char* key) {
    throw json::type_error::create(302, std::string(key) + " is not of its type and range", &object);
}

} // namespace orbel

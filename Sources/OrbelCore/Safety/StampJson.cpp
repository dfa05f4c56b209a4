#include "Safety/StampJson.h"

#include "Safety/FileStamp.h"

#include <limits>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

// The library's own conversions turn -1 into 2^64 - 1, true into 1 and 1.5 into 1. A stamp decides whether a
// file is the approved one, so a damaged number must not become another number.
[[noreturn]] void rejectNumber(const char* key, const nlohmann::json& json) {
    throw nlohmann::json::type_error::create(302, std::string(key) + " is not a number of its range", &json);
}

std::uint64_t unsignedAt(const nlohmann::json& json, const char* key) {
    const auto& value = json.at(key);
    if (!value.is_number_unsigned())
        rejectNumber(key, json);
    return value.get<std::uint64_t>();
}

std::int64_t signedAt(const nlohmann::json& json, const char* key) {
    const auto& value = json.at(key);
    if (!value.is_number_integer()
        || (value.is_number_unsigned()
            && value.get<std::uint64_t>()
                   > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())))
        rejectNumber(key, json);
    return value.get<std::int64_t>();
}

} // namespace

void to_json(nlohmann::json& json, const FileIdentity& identity) {
    json = {{"device", identity.device}, {"inode", identity.inode}};
}

void from_json(const nlohmann::json& json, FileIdentity& identity) {
    identity.device = unsignedAt(json, "device");
    identity.inode = unsignedAt(json, "inode");
}

void to_json(nlohmann::json& json, const FileStamp& stamp) {
    json = {{"identity", stamp.identity},
            {"size", stamp.size},
            {"modifiedNanos", stamp.modifiedNanos},
            {"isDirectory", stamp.isDirectory}};
}

void from_json(const nlohmann::json& json, FileStamp& stamp) {
    from_json(json.at("identity"), stamp.identity);
    stamp.size = unsignedAt(json, "size");
    stamp.modifiedNanos = signedAt(json, "modifiedNanos");
    stamp.isDirectory = json.at("isDirectory").get_ref<const bool&>();
}

} // namespace orbel

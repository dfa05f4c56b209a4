#include "Safety/StampJson.h"

#include "Safety/FileStamp.h"
#include "Util/StrictJson.h"

#include <nlohmann/json.hpp>

namespace orbel {

void to_json(nlohmann::json& json, const FileIdentity& identity) {
    json["device"] = identity.device;
    json["inode"] = identity.inode;
}

void from_json(const nlohmann::json& json, FileIdentity& identity) {
    identity.device = unsignedAt(json, "device");
    identity.inode = unsignedAt(json, "inode");
}

void to_json(nlohmann::json& json, const FileStamp& stamp) {
    json["identity"] = stamp.identity;
    json["size"] = stamp.size;
    json["modifiedNanos"] = stamp.modifiedNanos;
    json["isDirectory"] = stamp.isDirectory;
}

void from_json(const nlohmann::json& json, FileStamp& stamp) {
    from_json(json.at("identity"), stamp.identity);
    stamp.size = unsignedAt(json, "size");
    stamp.modifiedNanos = signedAt(json, "modifiedNanos");
    stamp.isDirectory = booleanAt(json, "isDirectory");
}

} // namespace orbel

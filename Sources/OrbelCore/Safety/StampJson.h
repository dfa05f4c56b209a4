#pragma once

#include <nlohmann/json_fwd.hpp>

namespace orbel {

struct FileIdentity;
struct FileStamp;

// Identities and stamps as JSON objects: {"device", "inode"} and {"identity", "size", "modifiedNanos",
// "isDirectory"}. Reading throws nlohmann::json::exception when a key is missing or its value is not of the
// exact type and range (nothing is rounded, wrapped or converted); the target may then be half filled.
// Further keys are passed over. They stand apart from the types because the library's headers are heavy.

void to_json(nlohmann::json& json, const FileIdentity& identity);
void from_json(const nlohmann::json& json, FileIdentity& identity);
void to_json(nlohmann::json& json, const FileStamp& stamp);
void from_json(const nlohmann::json& json, FileStamp& stamp);

} // namespace orbel

#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace orbel {

/// Puts a path, or other bytes from the disk, into a JSON object under `key`. Bytes that are not valid UTF-8
/// are printed there with replacement characters, which name no file; only for these, a further key, `key`
/// and "Bytes", has the bytes themselves in base64.
void putPath(nlohmann::json& object, const std::string& key, std::string_view path);

} // namespace orbel

#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace orbel {

/// JSON as people and scripts read it: two spaces a level, keys sorted by their bytes, slashes as they
/// are, no line feed at the end. Text that is not valid UTF-8, as names on a disk may be, gets
/// replacement characters.
std::string prettyJson(const nlohmann::json& json);

/// The same on one line, without blanks.
std::string compactJson(const nlohmann::json& json);

} // namespace orbel

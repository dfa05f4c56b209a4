#pragma once

#include "Util/Iso8601.h"

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace orbel {

// The members of a JSON object by key, in their exact type: nothing is rounded, wrapped or converted, as the
// library's own functions do (-1 to 2^64 - 1, true to 1, 1.5 to 1). A missing key, another type or a number
// out of range throws nlohmann::json::exception.

const std::string& textAt(const nlohmann::json& object, const char* key);
std::uint64_t unsignedAt(const nlohmann::json& object, const char* key);
std::int64_t signedAt(const nlohmann::json& object, const char* key);
bool booleanAt(const nlohmann::json& object, const char* key);
/// As iso8601() writes it.
Date dateAt(const nlohmann::json& object, const char* key);

/// The member, or nullptr when it is missing or null.
const nlohmann::json* optionalAt(const nlohmann::json& object, const char* key);

/// What the functions above throw for a member that has the wrong type.
[[noreturn]] void rejectMember(const nlohmann::json& object, const char* key);

} // namespace orbel

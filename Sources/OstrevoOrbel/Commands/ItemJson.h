#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace orbel {

struct DeletionItem;

/// What every list says of a row's item, as a JSON object: "path" and "preselected", and where there is one
/// the "blockedReason", the "advice" on it, the "command" that it names, and the "note".
nlohmann::json itemJson(const DeletionItem& item);

/// Puts what the user can do about this reason into the object as "advice", where there is something.
void putAdvice(nlohmann::json& object, std::string_view reason);

/// Puts the command of the program that manages what lies at `path` into the object as "command", where the
/// reason names it.
void putCommand(nlohmann::json& object, const std::string& path, std::string_view reason);

} // namespace orbel

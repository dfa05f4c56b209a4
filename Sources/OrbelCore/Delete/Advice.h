#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// What the user can do about an item that was refused or skipped for this reason, as one sentence; absent
/// where the reason says it already or nothing can be done.
std::optional<std::string> adviceOn(std::string_view reason);

} // namespace orbel

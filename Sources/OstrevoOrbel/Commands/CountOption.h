#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace orbel {

struct Request;

/// The number that an option has, 0 or more; absent without the option. Anything else ends the process as
/// wrong usage.
std::optional<std::uint64_t> countOf(const Request& request, std::string_view option);

} // namespace orbel

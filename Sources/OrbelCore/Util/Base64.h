#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// The bytes in base64 with the alphabet of RFC 4648, section 4, padded with "=".
std::string base64(std::string_view bytes);

} // namespace orbel

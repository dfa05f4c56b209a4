#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// The "file://" URL of an absolute path: ASCII for any bytes of the path, since all but letters, digits and
/// "-._~/" are escaped.
std::string fileUrl(std::string_view path);

/// The path of such a URL; absent for a URL of another kind or with an invalid escape.
std::optional<std::string> pathOfFileUrl(std::string_view url);

} // namespace orbel

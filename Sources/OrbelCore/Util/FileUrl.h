#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// The "file://" URL of an absolute path: plain text whatever the path's bytes, since all but letters, digits
/// and
/// "-._~/" are escaped.
std::string fileUrl(std::string_view path);

/// The path of such a URL; absent for a URL of another kind or with an escape that is none.
std::optional<std::string> pathOfFileUrl(std::string_view url);

} // namespace orbel

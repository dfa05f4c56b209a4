#include "Util/ReadLink.h"

#include <array>
#include <climits>

#include <unistd.h>

namespace orbel {

std::optional<std::string> linkText(const std::string& path) {
    std::array<char, PATH_MAX> text{};
    const auto length = ::readlink(path.c_str(), text.data(), text.size());
    if (length < 0)
        return std::nullopt;
    return std::string(text.data(), static_cast<std::size_t>(length));
}

} // namespace orbel

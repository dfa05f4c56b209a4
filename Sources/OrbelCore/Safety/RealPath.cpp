#include "Safety/RealPath.h"

#include "Util/PathText.h"

#include <cstdlib>
#include <memory>
#include <utility>

namespace orbel {

std::optional<std::string> RealPath::resolve(const std::string& path) {
    if (path.find('\0') != std::string::npos)
        return std::nullopt;
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    if (resolved == nullptr)
        return std::nullopt;
    return std::string(resolved.get());
}

bool RealPath::isInside(std::string_view path, std::string_view folder) {
    return isPathInside(path, folder);
}

} // namespace orbel

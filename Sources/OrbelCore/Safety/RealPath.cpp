#include "Safety/RealPath.h"

#include <cstdlib>
#include <memory>

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
    if (!path.starts_with(folder))
        return false;
    return path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/';
}

} // namespace orbel

#include "Util/PathText.h"

#include "Util/Utf8.h"

#include <algorithm>

namespace orbel {

namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path;
}

} // namespace

std::string_view parentPath(std::string_view path) {
    path = withoutTrailingSlashes(path);
    const auto slash = path.rfind('/');
    if (slash == std::string_view::npos)
        return {};
    return withoutTrailingSlashes(path.substr(0, slash + 1));
}

std::string_view lastPathComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    if (path == "/")
        return path;
    return path.substr(path.rfind('/') + 1); // npos + 1 is 0: no slash, the whole is the name
}

std::string joinedPath(std::string_view folder, std::string_view name) {
    std::string joined(withoutTrailingSlashes(folder));
    if (!joined.empty() && !joined.ends_with('/'))
        joined += '/';
    name.remove_prefix(std::min(name.find_first_not_of('/'), name.size()));
    joined += name;
    return joined;
}

std::vector<std::string_view> pathComponents(std::string_view path) {
    std::vector<std::string_view> components;
    while (!path.empty()) {
        const auto end = std::min(path.find('/'), path.size());
        if (end > 0)
            components.push_back(path.substr(0, end));
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return components;
}

bool isEntryName(std::string_view name) {
    constexpr std::string_view never("/\0", 2);
    return !name.empty() && name != "." && name != ".."
           && name.find_first_of(never) == std::string_view::npos;
}

bool isPathInside(std::string_view path, std::string_view folder) {
    if (!path.starts_with(folder))
        return false;
    return path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/';
}

std::string standardizedPath(std::string_view path) {
    const bool isAbsolute = path.starts_with('/');
    std::vector<std::string_view> kept;
    for (const auto component : pathComponents(path)) {
        if (component == "..") {
            if (!kept.empty() && kept.back() != "..")
                kept.pop_back();
            else if (!isAbsolute)
                kept.push_back(component);
        } else if (component != ".") {
            kept.push_back(component);
        }
    }
    std::string standardized(isAbsolute ? "/" : "");
    for (const auto component : kept) {
        if (!standardized.empty() && standardized.back() != '/')
            standardized += '/';
        standardized += component;
    }
    return standardized;
}

std::string tildePath(std::string_view path, std::string_view home) {
    if (home.empty() || home == "/" || !isPathInside(path, home))
        return lossyUtf8(path);
    return "~" + lossyUtf8(path.substr(home.size()));
}

} // namespace orbel

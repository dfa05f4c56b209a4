#include "Util/PathText.h"

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
    if (!joined.ends_with('/'))
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

} // namespace orbel

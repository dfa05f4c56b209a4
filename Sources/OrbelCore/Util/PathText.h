#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orbel {

// Paths taken apart and put together as text: nothing here asks the file system or changes the bytes of a
// name. Trailing slashes do not count, save the one of "/".

/// The folder that holds `path`: "/a" for "/a/b" and "/a/b/", "/" for "/a" and for "/", empty for "a". It is
/// a part of `path`, so it lives as long as that does.
std::string_view parentPath(std::string_view path);

/// The last name in `path`: "b" for "/a/b" and "/a/b/", "/" for "/", empty for "".
std::string_view lastPathComponent(std::string_view path);

/// `folder` and `name` with exactly one slash between them; `name` alone when `folder` is empty.
std::string joinedPath(std::string_view folder, std::string_view name);

/// The names in `path`, without the empty ones that repeated slashes leave; views into `path`.
std::vector<std::string_view> pathComponents(std::string_view path);

/// Whether something in a folder can be called so: not empty, ".", "..", nor with a slash or a zero byte.
bool isEntryName(std::string_view name);

/// Whether `path` is `folder` or lies inside it, by whole names. Exact comparison of text.
bool isPathInside(std::string_view path, std::string_view folder);

/// The path without ".", repeated or trailing slashes, and with each ".." and the name before it taken out.
/// For a path that cannot be resolved: where a link lies before a "..", the true path is another one.
std::string standardizedPath(std::string_view path);

/// The path for people: "~" in place of the home folder, and valid UTF-8 for any bytes.
std::string tildePath(std::string_view path, std::string_view home);

} // namespace orbel

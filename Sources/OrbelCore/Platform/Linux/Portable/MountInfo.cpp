#include "Platform/Linux/Portable/MountInfo.h"

#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace orbel::platform {

namespace {

/// The table writes space, tab, line feed and backslash as a backslash and three octal digits.
std::string unescaped(std::string_view field) {
    const auto octal = [](char c) { return c >= '0' && c <= '7'; };
    std::string plain;
    plain.reserve(field.size());
    for (std::size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 3 < field.size() && octal(field[i + 1]) && octal(field[i + 2])
            && octal(field[i + 3])) {
            plain.push_back(static_cast<char>((field[i + 1] - '0') * 64 + (field[i + 2] - '0') * 8
                                              + (field[i + 3] - '0')));
            i += 3;
        } else {
            plain.push_back(field[i]);
        }
    }
    return plain;
}

template <class Action>
void forEachLine(std::string_view text, Action&& action) {
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        action(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::vector<std::string_view> fieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    while (!line.empty()) {
        const auto end = std::min(line.find_first_of(" \t"), line.size());
        if (end > 0)
            fields.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return fields;
}

std::optional<std::uint64_t> numberIn(std::string_view field) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error != std::errc{} || end != field.data() + field.size())
        return std::nullopt;
    return value;
}

bool isNetworkFileSystem(std::string_view type) {
    // autofs counts: opening one mounts what lies behind it. Of FUSE only what serves a block
    // device is local.
    static constexpr std::array<std::string_view, 17> network{
        "9p",        "afs",    "autofs", "beegfs", "ceph", "cifs",  "coda", "davfs", "gfs2",
        "glusterfs", "lustre", "ncpfs",  "nfs",    "nfs4", "ocfs2", "smb3", "smbfs"};
    if (type == "fuse" || (type.starts_with("fuse.") && type != "fuse.fuseblk"))
        return true;
    return std::ranges::find(network, type) != network.end();
}

std::optional<Mount> parseLine(std::string_view line) {
    // id parent major:minor root path options [tags…] - type source super-options
    const auto fields = fieldsOf(line);
    const auto separator = std::ranges::find(fields, std::string_view("-"));
    if (separator - fields.begin() < 6 || fields.end() - separator < 3)
        return std::nullopt;
    const auto id = numberIn(fields[0]);
    const auto parentId = numberIn(fields[1]);
    if (!id || !parentId)
        return std::nullopt;
    return Mount{.id = *id,
                 .parentId = *parentId,
                 .path = unescaped(fields[4]),
                 .fileSystem = std::string(separator[1]),
                 .source = unescaped(separator[2]),
                 .isNetwork = isNetworkFileSystem(separator[1])};
}

} // namespace

std::vector<Mount> parseMountInfo(std::string_view text) {
    std::vector<Mount> mounts;
    forEachLine(text, [&](std::string_view line) {
        if (auto mount = parseLine(line))
            mounts.push_back(std::move(*mount));
    });
    return mounts;
}

std::vector<std::string> mountPointsInFstab(std::string_view text) {
    std::vector<std::string> paths;
    forEachLine(text, [&](std::string_view line) {
        // source path type options …
        const auto fields = fieldsOf(line);
        if (fields.size() < 2 || fields[0].starts_with('#'))
            return;
        auto path = standardizedPath(unescaped(fields[1]));
        if (path.starts_with('/') && path != "/")
            paths.push_back(std::move(path));
    });
    return paths;
}

} // namespace orbel::platform

#include "Safety/PathCanonicalizer.h"

#include "Safety/RealPath.h"
#include "Util/ReadFile.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <utility>

namespace orbel {

namespace {

/// The bytes of the newline character that `text` begins with, 0 when it begins with another one.
std::size_t newlineLength(std::string_view text) {
    static constexpr std::array<std::string_view, 7> newlines{"\n",       "\v",           "\f",          "\r",
                                                              "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};
    const auto found =
        std::ranges::find_if(newlines, [&](auto newline) { return text.starts_with(newline); });
    return found == newlines.end() ? 0 : found->size();
}

/// Takes the first line off `text`, its newline with it.
std::string_view takeLine(std::string_view& text) {
    std::size_t length = 0;
    std::size_t newline = 0;
    while (length < text.size() && (newline = newlineLength(text.substr(length))) == 0)
        ++length;
    const auto line = text.substr(0, length);
    text.remove_prefix(length + newline);
    return line;
}

std::optional<PathCanonicalizer::Mapping> parseLine(std::string_view line) {
    const auto tab = line.find('\t');
    if (tab == std::string_view::npos || !line.starts_with('/'))
        return std::nullopt;
    const auto dataRelative = line.substr(tab + 1);
    if (dataRelative.empty() || dataRelative.find('\t') != std::string_view::npos)
        return std::nullopt;
    return PathCanonicalizer::Mapping{.dataRelative = std::string(dataRelative),
                                      .visible = std::string(line.substr(0, tab))};
}

/// Unlike RealPath::isInside, a trailing slash of `folder` gets no special reading: the table's text stands
/// as it is.
bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::string systemTable() {
    auto text = readFile("/usr/share/firmlinks");
    return text && isValidUtf8(*text) ? std::move(*text) : std::string();
}

} // namespace

PathCanonicalizer::PathCanonicalizer(std::string_view firmlinksTable) {
    const auto length = [](const Mapping& mapping) { return characterCount(mapping.dataRelative); };
    while (!firmlinksTable.empty())
        if (auto mapping = parseLine(takeLine(firmlinksTable))) {
            const auto place =
                std::ranges::upper_bound(mappings_, length(*mapping), std::ranges::greater(), length);
            mappings_.insert(place, std::move(*mapping));
        }
}

const PathCanonicalizer& PathCanonicalizer::shared() {
    static const PathCanonicalizer instance(systemTable());
    return instance;
}

std::optional<std::string> PathCanonicalizer::canonical(const std::string& path) const {
    const auto real = RealPath::resolve(path);
    if (!real)
        return std::nullopt;
    return visiblePath(*real);
}

std::string PathCanonicalizer::visiblePath(std::string_view path) const {
    if (path.starts_with(dataVolumePrefix) && path.substr(dataVolumePrefix.size()).starts_with('/')) {
        const auto rest = path.substr(dataVolumePrefix.size() + 1);
        for (const auto& [dataRelative, visible] : mappings_)
            if (isAtOrBelow(rest, dataRelative))
                return visible + std::string(rest.substr(dataRelative.size()));
    }
    return std::string(path);
}

std::string PathCanonicalizer::dataVolumePath(std::string_view path) const {
    for (const auto& [dataRelative, visible] : mappings_)
        if (isAtOrBelow(path, visible))
            return std::string(dataVolumePrefix) + "/" + dataRelative
                   + std::string(path.substr(visible.size()));
    return std::string(path);
}

} // namespace orbel

#include "Platform/Linux/Portable/DesktopEntry.h"

#include "Util/ReadFile.h"

#include <algorithm>
#include <cstdint>

namespace orbel::platform {

namespace {

constexpr std::uint64_t mostBytes = 1024 * 1024;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
    return text;
}

/// What a backslash and this letter stand for; 0 when they stand for themselves.
char escaped(char letter) {
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    case '\\':
        return '\\';
    default:
        return 0;
    }
}

std::string withoutEscapes(std::string_view value) {
    std::string text;
    text.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char meant = value[i] == '\\' && i + 1 < value.size() ? escaped(value[i + 1]) : '\0';
        text += meant == 0 ? value[i] : meant;
        i += meant == 0 ? 0 : 1;
    }
    return text;
}

} // namespace

DesktopEntry DesktopEntry::parse(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    DesktopEntry entry;
    Values* group = nullptr;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.starts_with('#'))
            continue;
        if (line.starts_with('[')) {
            // What follows a malformed group header belongs to no group.
            group = nullptr;
            if (!line.ends_with(']') || line.size() < 3)
                continue;
            std::string name(line.substr(1, line.size() - 2));
            if (!entry.groups_.contains(name))
                entry.groupNames_.push_back(name);
            group = &entry.groups_[std::move(name)];
            continue;
        }
        const auto equals = line.find('=');
        if (group == nullptr || equals == std::string_view::npos)
            continue;
        if (const auto key = trimmed(line.substr(0, equals)); !key.empty())
            (*group)[std::string(key)] = trimmed(line.substr(equals + 1));
    }
    return entry;
}

std::optional<DesktopEntry> DesktopEntry::read(const std::string& path) {
    const auto content = readRegularFile(path, mostBytes);
    if (!content)
        return std::nullopt;
    auto entry = parse(*content);
    if (!entry.groups_.contains(mainGroup))
        return std::nullopt;
    return entry;
}

std::optional<std::string> DesktopEntry::text(std::string_view key, std::string_view group) const {
    const auto values = groups_.find(group);
    if (values == groups_.end())
        return std::nullopt;
    const auto found = values->second.find(key);
    if (found == values->second.end() || found->second.find('\0') != std::string::npos)
        return std::nullopt;
    return withoutEscapes(found->second);
}

bool DesktopEntry::isTrue(std::string_view key, std::string_view group) const {
    return text(key, group) == "true";
}

} // namespace orbel::platform

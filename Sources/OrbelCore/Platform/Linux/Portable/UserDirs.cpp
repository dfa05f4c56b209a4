#include "Platform/Linux/Portable/UserDirs.h"

#include "Util/PathText.h"

#include <algorithm>

namespace orbel::platform {

namespace {

constexpr std::string_view blanks = " \t\r";

void skip(std::string_view& text, std::string_view characters) {
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
}

bool take(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

/// The file is read by shells too, so a backslash takes the next character as it is, and a value ends at its
/// closing quote or, without quotes, at the first blank.
std::string unquoted(std::string_view text) {
    const bool isQuoted = take(text, "\"");
    std::string value;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isQuoted ? text[i] == '"' : blanks.find(text[i]) != std::string_view::npos)
            break;
        if (text[i] == '\\' && i + 1 < text.size())
            ++i;
        value += text[i];
    }
    return value;
}

/// What a line assigns to XDG_PICTURES_DIR; absent when it assigns nothing to it.
std::optional<std::string> assignedValue(std::string_view line) {
    skip(line, blanks);
    if (!take(line, "XDG_PICTURES_DIR"))
        return std::nullopt;
    skip(line, blanks);
    if (!take(line, "="))
        return std::nullopt;
    skip(line, blanks);
    return unquoted(line);
}

std::optional<std::string> folderOf(std::string_view value, const std::string& home) {
    const bool isInHome = take(value, "$HOME") || take(value, "${HOME}");
    if (!value.starts_with('/')) // "$HOME" alone, something like "$HOMER/x", or relative
        return std::nullopt;
    auto folder = standardizedPath(isInHome ? home + std::string(value) : std::string(value));
    if (folder == standardizedPath(home))
        return std::nullopt;
    return folder;
}

} // namespace

std::optional<std::string> pictureFolderIn(std::string_view userDirs, const std::string& home) {
    std::optional<std::string> folder;
    while (!userDirs.empty()) {
        const auto end = std::min(userDirs.find('\n'), userDirs.size());
        if (const auto value = assignedValue(userDirs.substr(0, end)))
            folder = folderOf(*value, home);
        userDirs.remove_prefix(std::min(end + 1, userDirs.size()));
    }
    return folder;
}

} // namespace orbel::platform

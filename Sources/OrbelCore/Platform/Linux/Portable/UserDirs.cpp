#include "Platform/Linux/Portable/UserDirs.h"

#include "Util/PathText.h"

#include <algorithm>
#include <optional>

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

struct Assignment {
    std::string folder; ///< "PICTURES" of XDG_PICTURES_DIR
    std::string value;
};

std::optional<Assignment> assignmentIn(std::string_view line) {
    constexpr std::string_view ending = "_DIR";
    skip(line, blanks);
    if (!take(line, "XDG_"))
        return std::nullopt;
    const auto name = line.substr(0, line.find_first_of(" \t\r="));
    line.remove_prefix(name.size());
    skip(line, blanks);
    if (!name.ends_with(ending) || !take(line, "="))
        return std::nullopt;
    skip(line, blanks);
    return Assignment{.folder = std::string(name.substr(0, name.size() - ending.size())),
                      .value = unquoted(line)};
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

std::map<std::string, std::string> userFoldersIn(std::string_view userDirs, const std::string& home) {
    std::map<std::string, std::string> folders;
    while (!userDirs.empty()) {
        const auto end = std::min(userDirs.find('\n'), userDirs.size());
        if (const auto assignment = assignmentIn(userDirs.substr(0, end))) {
            folders.erase(assignment->folder);
            if (auto folder = folderOf(assignment->value, home))
                folders.emplace(assignment->folder, *std::move(folder));
        }
        userDirs.remove_prefix(std::min(end + 1, userDirs.size()));
    }
    return folders;
}

} // namespace orbel::platform

#include "Platform/Linux/Portable/Xbel.h"

#include "Util/FileUrl.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

namespace orbel::platform {

namespace {

constexpr std::string_view blanks = " \t\r\n";

bool isBlank(char c) {
    return blanks.find(c) != std::string_view::npos;
}

/// Takes a text apart from its beginning, in one pass.
class Cursor {
public:
    explicit Cursor(std::string_view text) : rest_(text) {}

    bool isAtEnd() const { return rest_.empty(); }

    bool take(std::string_view expected) {
        if (!rest_.starts_with(expected))
            return false;
        rest_.remove_prefix(expected.size());
        return true;
    }

    /// All up to `end`, which is taken as well; absent when it does not come.
    std::optional<std::string_view> takeThrough(std::string_view end) {
        const auto found = rest_.find(end);
        if (found == std::string_view::npos)
            return std::nullopt;
        const auto taken = rest_.substr(0, found);
        rest_.remove_prefix(found + end.size());
        return taken;
    }

    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(blanks), rest_.size())); }

    std::string_view takeName() {
        const auto isInName = [](char c) {
            return !isBlank(c) && c != '=' && c != '/' && c != '>' && c != '<';
        };
        const auto end = std::ranges::find_if_not(rest_, isInName);
        const auto name = rest_.substr(0, static_cast<std::size_t>(end - rest_.begin()));
        rest_.remove_prefix(name.size());
        return name;
    }

private:
    std::string_view rest_;
};

/// A character that is named by its number. The bytes of an address are written as they are or with "%", so
/// nothing but ASCII is expected here.
std::optional<char> numberedCharacter(std::string_view number) {
    const bool isHexadecimal = number.starts_with('x');
    number.remove_prefix(isHexadecimal ? 1 : 0);
    unsigned value = 0;
    const auto [end, error] =
        std::from_chars(number.data(), number.data() + number.size(), value, isHexadecimal ? 16 : 10);
    if (error != std::errc{} || end != number.data() + number.size() || value == 0 || value > 0x7F)
        return std::nullopt;
    return static_cast<char>(value);
}

std::optional<char> characterOf(std::string_view entity) {
    constexpr std::array<std::pair<std::string_view, char>, 5> named{
        {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
    if (entity.starts_with('#'))
        return numberedCharacter(entity.substr(1));
    const auto* const found = std::ranges::find(named, entity, &std::pair<std::string_view, char>::first);
    return found == named.end() ? std::nullopt : std::optional(found->second);
}

/// The text that an attribute's value stands for; absent when it has an entity that nothing is known of.
std::optional<std::string> unescaped(std::string_view value) {
    std::string text;
    Cursor cursor(value);
    while (const auto plain = cursor.takeThrough("&")) {
        text += *plain;
        const auto entity = cursor.takeThrough(";");
        const auto character = entity ? characterOf(*entity) : std::nullopt;
        if (!character)
            return std::nullopt;
        text += *character;
        value.remove_prefix(plain->size() + entity->size() + 2);
    }
    return text += value;
}

/// A date as desktops write it: in UTC, perhaps with a fraction of the second, which is cut off.
std::optional<Date> dateIn(std::string_view value) {
    const auto point = value.find('.');
    if (point == std::string_view::npos)
        return parseIso8601(value);
    const auto fraction = value.substr(point + 1);
    if (fraction.size() < 2 || fraction.find_first_not_of("0123456789") != fraction.size() - 1
        || !fraction.ends_with('Z'))
        return std::nullopt;
    return parseIso8601(std::string(value.substr(0, point)) + "Z");
}

void applyAttribute(std::string_view attribute, std::string_view value, XbelBookmark& bookmark) {
    if (attribute == "href") {
        const auto address = unescaped(value);
        bookmark.path = address ? pathOfFileUrl(*address).value_or("") : "";
    } else if (attribute == "added" || attribute == "modified" || attribute == "visited") {
        bookmark.latest = std::max(bookmark.latest, dateIn(value)); // no date is less than any
    }
}

/// Reads the attributes of a tag whose name has been taken, to its end; absent when it has none.
std::optional<XbelBookmark> attributesAt(Cursor& cursor) {
    XbelBookmark bookmark;
    while (true) {
        cursor.skipBlanks();
        if (cursor.take(">") || cursor.take("/>"))
            return bookmark;
        const auto name = cursor.takeName();
        cursor.skipBlanks();
        if (name.empty() || !cursor.take("="))
            return std::nullopt;
        cursor.skipBlanks();
        const std::string_view quote = cursor.take("\"") ? "\"" : "'";
        if (quote == "'" && !cursor.take(quote))
            return std::nullopt;
        const auto value = cursor.takeThrough(quote);
        if (!value)
            return std::nullopt;
        applyAttribute(name, *value, bookmark);
    }
}

/// What stands between "<" and ">" but is no element.
enum class Passed : std::uint8_t { nothing, something, broken };
Passed passOver(Cursor& cursor) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kinds{
        {{"!--", "-->"}, {"![CDATA[", "]]>"}, {"?", "?>"}, {"!", ">"}, {"/", ">"}}};
    for (const auto& [begin, end] : kinds)
        if (cursor.take(begin))
            return cursor.takeThrough(end) ? Passed::something : Passed::broken;
    return Passed::nothing;
}

} // namespace

std::vector<XbelBookmark> localBookmarksIn(std::string_view xbel) {
    std::vector<XbelBookmark> bookmarks;
    Cursor cursor(xbel);
    while (cursor.takeThrough("<")) {
        const auto passed = passOver(cursor);
        if (passed == Passed::broken)
            break;
        if (passed == Passed::something)
            continue;
        const auto element = cursor.takeName();
        auto bookmark = attributesAt(cursor);
        if (!bookmark)
            break;
        if (element == "bookmark" && bookmark->path.starts_with('/'))
            bookmarks.push_back(*std::move(bookmark));
    }
    return bookmarks;
}

} // namespace orbel::platform

#include "Delete/TrashName.h"

#include "Util/Check.h"

namespace orbel {

namespace {

/// What follows the last dot, with it; nothing when it is too long to be an extension or is the whole name.
std::string_view extensionOf(std::string_view name) {
    constexpr std::size_t longest = 32;
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || name.size() - dot > longest)
        return {};
    return name.substr(dot);
}

/// The first bytes of the text, without the beginning of a character that would not be whole.
std::string_view cutTo(std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes)
        return text;
    const auto continues = [&](std::size_t at) {
        return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
    };
    std::size_t end = bytes;
    // A character has at most three continuation bytes; more of them are no UTF-8, and one place is as good
    // as another.
    for (int back = 0; back < 3 && end > 0 && continues(end); ++back)
        --end;
    return text.substr(0, continues(end) ? bytes : end);
}

} // namespace

std::string trashName(std::string_view name, unsigned attempt, std::size_t maxBytes) {
    ORBEL_CHECK(maxBytes >= 64, "room for a name with its number and extension");
    const auto extension = extensionOf(name);
    const std::string number = attempt > 1 ? " " + std::to_string(attempt) : "";
    const auto stem = name.substr(0, name.size() - extension.size());
    std::string stored(cutTo(stem, maxBytes - number.size() - extension.size()));
    stored += number;
    stored += extension;
    return stored;
}

} // namespace orbel

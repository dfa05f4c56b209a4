#include "Delete/ItemNote.h"

#include <algorithm>
#include <vector>

namespace orbel {

namespace {

constexpr std::string_view between = " · ";
constexpr std::string_view oneUnreadable = "1 entry in it could not be read";
constexpr std::string_view manyUnreadable = " entries in it could not be read";

bool isOfUnreadable(std::string_view part) {
    return part == oneUnreadable
           || (part.ends_with(manyUnreadable)
               && part.find_first_not_of("0123456789") == part.size() - manyUnreadable.size());
}

/// Valid as long as the note.
std::vector<std::string_view> partsOf(const std::optional<std::string>& note) {
    std::vector<std::string_view> parts;
    std::string_view left = note ? std::string_view(*note) : std::string_view();
    for (auto end = left.find(between); end != std::string_view::npos; end = left.find(between)) {
        parts.push_back(left.substr(0, end));
        left.remove_prefix(end + between.size());
    }
    if (!left.empty())
        parts.push_back(left);
    return parts;
}

} // namespace

std::optional<std::string> ItemNote::withUnreadable(const std::optional<std::string>& note,
                                                    std::uint64_t entries) {
    std::string words;
    const auto append = [&words](std::string_view part) {
        if (!words.empty())
            words += between;
        words += part;
    };
    for (const auto part : partsOf(note))
        if (!isOfUnreadable(part))
            append(part);
    if (entries > 0)
        append(entries == 1 ? std::string(oneUnreadable)
                            : std::to_string(entries) + std::string(manyUnreadable));
    return words.empty() ? std::nullopt : std::optional(std::move(words));
}

std::optional<std::string> ItemNote::joined(const std::optional<std::string>& note,
                                            const std::optional<std::string>& other) {
    if (!note || !other)
        return note ? note : other;
    return *note + std::string(between) + *other;
}

bool ItemNote::saysLess(const std::optional<std::string>& note) {
    return std::ranges::any_of(
        partsOf(note), [](std::string_view part) { return part == otherLinks || part == sharedStorage; });
}

bool ItemNote::saysMore(const std::optional<std::string>& note) {
    return std::ranges::any_of(partsOf(note), isOfUnreadable);
}

} // namespace orbel

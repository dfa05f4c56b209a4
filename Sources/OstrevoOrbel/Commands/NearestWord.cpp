#include "Commands/NearestWord.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace orbel {

namespace {

std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> row(to.size() + 1); // the distances of the letters so far to each start of `to`
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = i;
    for (const char letter : from) {
        std::size_t diagonal = std::exchange(row[0], row[0] + 1);
        for (std::size_t i = 0; i < to.size(); ++i) {
            const auto changed = diagonal + (letter == to[i] ? 0 : 1);
            diagonal = row[i + 1];
            row[i + 1] = std::min({changed, diagonal + 1, row[i] + 1});
        }
    }
    return row.back();
}

/// The hyphens before a name say nothing about which one is meant.
std::string_view withoutHyphens(std::string_view word) {
    word.remove_prefix(std::min(word.find_first_not_of('-'), word.size()));
    return word;
}

} // namespace

std::optional<std::string_view> nearestWord(std::string_view word, std::span<const std::string_view> known) {
    const auto letters = withoutHyphens(word);
    std::optional<std::string_view> nearest;
    auto nearestDistance = letters.size() / 2 + 1;
    for (const auto candidate : known) {
        const auto distance = editDistance(letters, withoutHyphens(candidate));
        if (distance < nearestDistance) {
            nearestDistance = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

} // namespace orbel

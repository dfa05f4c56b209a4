#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace orbel {

/// Sorts the numbers of rows or nodes by what `keyOf` gives for each, which is asked once. Equal ones stay in
/// their order.
template <class KeyOf>
void sortByKey(std::vector<std::uint32_t>& numbers, bool isDescending, KeyOf keyOf) {
    std::vector<std::pair<decltype(keyOf(0U)), std::uint32_t>> keyed;
    keyed.reserve(numbers.size());
    for (const auto number : numbers)
        keyed.emplace_back(keyOf(number), number);
    const auto key = [](const auto& entry) -> const auto& {
        return entry.first;
    };
    if (isDescending)
        std::ranges::stable_sort(keyed, std::ranges::greater{}, key);
    else
        std::ranges::stable_sort(keyed, {}, key);
    std::ranges::transform(keyed, numbers.begin(), [](const auto& entry) { return entry.second; });
}

} // namespace orbel

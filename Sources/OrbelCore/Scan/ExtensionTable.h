#pragma once

#include "Util/Check.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orbel {

/// An extension in lower case as two words. Only ASCII letters are lowered; at most 16 bytes fit.
struct ExtensionKey {
    static constexpr std::size_t mostBytes = 16;

    std::uint64_t low = 0;
    std::uint64_t high = 0;

    constexpr bool operator==(const ExtensionKey&) const = default;

    static constexpr char lower(char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }

    static constexpr ExtensionKey of(std::string_view text) {
        ExtensionKey key;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const auto byte = static_cast<std::uint64_t>(static_cast<unsigned char>(lower(text[i])));
            if (i < 8)
                key.low |= byte << (8 * i);
            else
                key.high |= byte << (8 * (i - 8));
        }
        return key;
    }

    std::string text() const {
        std::string text;
        for (std::size_t i = 0; i < mostBytes; ++i) {
            const auto byte = (i < 8 ? low >> (8 * i) : high >> (8 * (i - 8))) & 0xFFU;
            if (byte == 0)
                break;
            text.push_back(static_cast<char>(byte));
        }
        return text;
    }

    constexpr std::uint64_t hash() const { return (low ^ (high * 31)) * 0x9E3779B97F4A7C15U; }
};

/// The longest extension that a name may have, in characters.
inline constexpr std::size_t longestExtension = 12;

/// What follows the last dot when it is an extension of at most `longest` characters; empty when there is
/// none, or when the dot is the first character.
std::string_view extensionIn(std::string_view name, std::size_t longest = longestExtension);

/// Calls `take` with each word of a list that is separated by spaces.
constexpr void forEachExtension(std::string_view list, const auto& take) {
    while (!list.empty()) {
        const std::string_view extension = list.substr(0, list.find(' '));
        ORBEL_CHECK(extension.size() <= longestExtension, "no name has so long an extension");
        take(extension);
        list.remove_prefix(std::min(extension.size() + 1, list.size()));
    }
}

/// A value for each of the listed extensions, filled when the program is compiled. Open addressing with
/// linear probing; `slots`, a power of two, is three times the number of entries or more, so a look-up that
/// finds nothing, which is what most names do, ends at once.
template <class Value, std::size_t slots>
class ExtensionTable {
public:
    /// The value of an extension in any case; null when it is not listed.
    constexpr const Value* find(std::string_view extension) const {
        if (extension.empty() || extension.size() > ExtensionKey::mostBytes)
            return nullptr;
        const auto& slot = slots_[place(ExtensionKey::of(extension))];
        return slot.key == ExtensionKey{} ? nullptr : &slot.value;
    }

    /// The value of an extension that is listed from now on.
    constexpr Value& operator[](std::string_view extension) {
        const auto key = ExtensionKey::of(extension);
        auto& slot = slots_[place(key)];
        count_ += slot.key == ExtensionKey{} ? 1 : 0;
        ORBEL_CHECK(count_ * 3 <= slots, "a table that is too full");
        slot.key = key;
        return slot.value;
    }

private:
    struct Slot {
        ExtensionKey key;
        Value value{};
    };

    /// Where the key is, or would be.
    constexpr std::size_t place(ExtensionKey key) const {
        auto i = static_cast<std::size_t>(key.hash() >> (64 - std::countr_zero(slots)));
        while (!(slots_[i].key == key) && !(slots_[i].key == ExtensionKey{}))
            i = (i + 1) % slots;
        return i;
    }

    std::array<Slot, slots> slots_{};
    std::size_t count_ = 0;
};

} // namespace orbel

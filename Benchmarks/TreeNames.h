#pragma once

#include <cstdint>
#include <string>

namespace orbel::benchmarks {

/// The same numbers for the same seed on every machine, which the standard library's distributions do not
/// promise.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        state_ += 0x9e3779b97f4a7c15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebU;
        return mixed ^ (mixed >> 31U);
    }

    /// From 0 to `bound` - 1; `bound` must not be 0.
    std::uint64_t below(std::uint64_t bound) { return next() % bound; }

    bool oneIn(std::uint64_t count) { return below(count) == 0; }

private:
    std::uint64_t state_;
};

/// What a part of a home folder holds, and so how its files are called.
enum class Theme : std::uint8_t { documents, pictures, music, source, packages, cache, mail, settings };
constexpr std::uint64_t themeCount = 8;

/// A name for the `ordinal`-th file of a folder; no two ordinals give the same. 14 to 16 bytes long on
/// average.
std::string fileName(Random& random, Theme theme, std::uint64_t ordinal);

/// A name for the `ordinal`-th folder in a folder; never that of a file of fileName().
std::string folderName(Random& random, std::uint64_t ordinal);

} // namespace orbel::benchmarks

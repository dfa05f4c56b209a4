#pragma once

#include <cstdint>
#include <string>

namespace orbel {

/// The one way a count of bytes is written for people: decimal units from B to TB, a point before decimals in
/// every locale. Not instantiable.
struct ByteFormat {
    ByteFormat() = delete;

    struct Parts {
        std::string value;
        std::string unit;
    };

    /// "999 B", "1 KB", "13 MB", "1.2 GB", "2.50 TB". The unit is chosen before rounding and never carried:
    /// 999,999 bytes are "1000 KB".
    static std::string string(std::uint64_t bytes);

    /// The same in two, for screens that set number and unit in different sizes.
    static Parts parts(std::uint64_t bytes);

    /// The same with U+2212 MINUS SIGN before a negative count and no sign before others. The most negative
    /// value, which has no counterpart, is a programming error and stops the process.
    static std::string signedString(std::int64_t bytes);
};

} // namespace orbel

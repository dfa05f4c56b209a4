#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orbel {

/// Writes numbers and texts one after another, in a form that is the same on every machine: numbers seven
/// bits a byte, the lowest first.
class ByteWriter {
public:
    void number(std::uint64_t value) {
        while (value >= 0x80) {
            bytes_ += static_cast<char>(value | 0x80);
            value >>= 7U;
        }
        bytes_ += static_cast<char>(value);
    }
    /// How far `value` is from `expected`, either way: small when it is near.
    void difference(std::uint64_t value, std::uint64_t expected) {
        const auto apart = static_cast<std::int64_t>(value - expected);
        number((static_cast<std::uint64_t>(apart) << 1U) ^ static_cast<std::uint64_t>(apart >> 63U));
    }
    void text(std::string_view text) {
        number(text.size());
        bytes_ += text;
    }
    void raw(std::string_view bytes) { bytes_ += bytes; }

    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// Reads what a ByteWriter wrote, from any bytes. After the first thing that is not there it has failed, and
/// gives zeros and empty texts.
class ByteReader {
public:
    /// The bytes must live as long as this.
    explicit ByteReader(std::string_view bytes) : rest_(bytes) {}

    std::uint64_t number() {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            if (rest_.empty())
                break;
            const auto byte = static_cast<unsigned char>(rest_.front());
            rest_.remove_prefix(1);
            value |= std::uint64_t{byte & 0x7FU} << shift;
            if (byte < 0x80)
                return value;
        }
        fail();
        return 0;
    }
    std::uint64_t difference(std::uint64_t expected) {
        const auto apart = number();
        return expected + ((apart >> 1U) ^ (~(apart & 1U) + 1U));
    }
    /// Of at most so many bytes.
    std::string text(std::size_t longest);
    /// A number up to `largest`.
    std::uint64_t numberUpTo(std::uint64_t largest);

    bool hasFailed() const { return hasFailed_; }
    /// Whether all was read and nothing was missing.
    bool isAtEnd() const { return !hasFailed_ && rest_.empty(); }

private:
    void fail() {
        rest_ = {};
        hasFailed_ = true;
    }

    std::string_view rest_;
    bool hasFailed_ = false;
};

} // namespace orbel

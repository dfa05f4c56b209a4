#pragma once

#include "Saved/TextPieces.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orbel {

/// Reads JSON from any bytes, value after value, as its caller asks for them. Texts are bytes: they need not
/// be UTF-8, which the JSON library insists on, and may have control characters in them. Nothing is nested on
/// the stack. After the first failure it gives zeros, empty texts and "no".
class RawJson {
public:
    /// `beginning` is what was already taken from the pieces, and valid until more is.
    RawJson(TextPieces& pieces, std::string_view beginning) : pieces_(pieces), piece_(beginning) {}

    /// Takes this character, after white space, if it comes next.
    bool take(char character);
    /// Takes it, or fails.
    void expect(char character);
    /// A text without its escapes, valid until the next one is read. Half of a surrogate pair is replaced.
    std::string_view text();
    /// The key of a member, and the colon behind it.
    std::string_view key();
    /// A whole number that is not negative.
    std::uint64_t number();
    /// A number of seconds; a fraction is cut off.
    std::int64_t seconds();
    bool boolean();
    /// Any value.
    void skip();
    /// Nothing but white space may follow.
    void expectEnd();

    void fail(std::string_view words);
    bool hasFailed() const { return !failure_.empty(); }
    /// In words for people; empty while nothing has failed.
    const std::string& failure() const { return failure_; }

private:
    struct Number {
        bool isNegative = false;
        bool isWhole = true;
        bool fits = true;
        std::uint64_t magnitude = 0;
    };

    int peek();
    int peekValue();
    bool takeHere(char character);
    void failHere();
    void literal(std::string_view rest);
    Number anyNumber();
    bool digits(Number& number);
    void escape();
    std::uint32_t hexadecimal();
    void append(std::uint32_t character);

    TextPieces& pieces_;
    std::string_view piece_; ///< what of it was not taken yet
    std::string text_;
    std::string failure_;
};

} // namespace orbel

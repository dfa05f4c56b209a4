#include "Saved/RawJson.h"

#include <algorithm>
#include <limits>

namespace orbel {

namespace {

constexpr int end = -1;
constexpr std::size_t longestText = 1024 * 1024;
constexpr std::size_t deepest = 64 * 1024;

bool isDigit(int character) {
    return character >= '0' && character <= '9';
}

bool isWhite(int character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

} // namespace

void RawJson::fail(std::string_view words) {
    if (!hasFailed())
        failure_ = words;
    piece_ = {};
    text_.clear();
}

void RawJson::failHere() {
    fail(peek() == end ? "The export ends too early" : "The export is damaged");
}

int RawJson::peek() {
    if (piece_.empty() && !hasFailed()) {
        const auto more = pieces_.next();
        if (more)
            piece_ = *more;
        else
            fail(more.error());
    }
    return piece_.empty() ? end : static_cast<unsigned char>(piece_.front());
}

int RawJson::peekValue() {
    while (isWhite(peek()))
        piece_.remove_prefix(1);
    return peek();
}

bool RawJson::takeHere(char character) {
    const bool isNext = peek() == static_cast<unsigned char>(character);
    if (isNext)
        piece_.remove_prefix(1);
    return isNext;
}

bool RawJson::take(char character) {
    peekValue();
    return takeHere(character);
}

void RawJson::expect(char character) {
    if (!take(character))
        failHere();
}

void RawJson::expectEnd() {
    if (peekValue() != end)
        failHere();
}

std::string_view RawJson::text() {
    text_.clear();
    expect('"');
    while (!hasFailed()) {
        if (takeHere('"'))
            break;
        if (takeHere('\\')) {
            escape();
        } else if (peek() == end) {
            failHere();
        } else {
            const auto plain = piece_.substr(0, piece_.find_first_of("\"\\"));
            text_ += plain;
            piece_.remove_prefix(plain.size());
        }
        if (text_.size() > longestText)
            fail("The export is damaged");
    }
    return text_;
}

std::string_view RawJson::key() {
    text();
    expect(':');
    return text_;
}

void RawJson::escape() {
    constexpr std::string_view written = "\"\\/bfnrt";
    constexpr std::string_view meant = "\"\\/\b\f\n\r\t";
    constexpr auto none = std::string_view::npos;
    if (const auto which = peek() == end ? none : written.find(static_cast<char>(peek())); which != none) {
        piece_.remove_prefix(1);
        text_ += meant[which];
        return;
    }
    if (!takeHere('u')) {
        failHere();
        return;
    }
    constexpr std::uint32_t replacement = 0xFFFD;
    const auto isHigh = [](std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; };
    const auto isLow = [](std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; };
    auto unit = hexadecimal();
    // A high half may be followed by another one, or by something else that is a character of its own.
    while (isHigh(unit)) {
        if (!takeHere('\\')) {
            append(replacement);
            return;
        }
        if (!takeHere('u')) {
            append(replacement);
            escape(); // ends here: what it begins with is not a "u"
            return;
        }
        const auto next = hexadecimal();
        if (isLow(next)) {
            append(0x10000 + ((unit - 0xD800) << 10U) + (next - 0xDC00));
            return;
        }
        append(replacement);
        unit = next;
    }
    append(isLow(unit) ? replacement : unit);
}

std::uint32_t RawJson::hexadecimal() {
    std::uint32_t value = 0;
    for (int digit = 0; digit < 4; ++digit) {
        const int character = peek();
        const int lower = character | 0x20;
        if (isDigit(character)) {
            value = value << 4U | static_cast<std::uint32_t>(character - '0');
        } else if (lower >= 'a' && lower <= 'f') {
            value = value << 4U | static_cast<std::uint32_t>(lower - 'a' + 10);
        } else {
            failHere();
            return 0;
        }
        piece_.remove_prefix(1);
    }
    return value;
}

/// As UTF-8.
void RawJson::append(std::uint32_t character) {
    if (hasFailed())
        return;
    constexpr std::uint32_t tailBits = 6;
    const auto put = [&](std::uint32_t byte) { text_ += static_cast<char>(byte); };
    const auto putTail = [&](std::uint32_t place) { put(0x80U | (character >> place * tailBits & 0x3FU)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0U | character >> tailBits);
        putTail(0);
    } else if (character < 0x10000) {
        put(0xE0U | character >> 2 * tailBits);
        putTail(1);
        putTail(0);
    } else {
        put(0xF0U | character >> 3 * tailBits);
        putTail(2);
        putTail(1);
        putTail(0);
    }
}

bool RawJson::digits(Number& number) {
    const bool areThere = isDigit(peek());
    for (; isDigit(peek()); piece_.remove_prefix(1))
        number.fits =
            number.fits && !__builtin_mul_overflow(number.magnitude, std::uint64_t{10}, &number.magnitude)
            && !__builtin_add_overflow(number.magnitude, static_cast<std::uint64_t>(piece_.front() - '0'),
                                       &number.magnitude);
    if (!areThere)
        failHere();
    return areThere;
}

RawJson::Number RawJson::anyNumber() {
    Number number;
    number.isNegative = take('-');
    digits(number);
    Number unused;
    if (takeHere('.')) {
        number.isWhole = false;
        digits(unused);
    }
    if (takeHere('e') || takeHere('E')) {
        number.isWhole = number.fits = false;
        if (!takeHere('+'))
            takeHere('-');
        digits(unused);
    }
    return number;
}

std::uint64_t RawJson::number() {
    const auto number = anyNumber();
    if (number.isNegative || !number.isWhole || !number.fits)
        failHere();
    return hasFailed() ? 0 : number.magnitude;
}

std::int64_t RawJson::seconds() {
    const auto number = anyNumber();
    if (!number.fits || number.magnitude > std::numeric_limits<std::int64_t>::max())
        failHere();
    const auto magnitude = hasFailed() ? 0 : static_cast<std::int64_t>(number.magnitude);
    return number.isNegative ? -magnitude : magnitude;
}

void RawJson::literal(std::string_view rest) {
    for (const char character : rest)
        if (!takeHere(character))
            failHere();
}

bool RawJson::boolean() {
    const bool isTrue = take('t');
    if (isTrue)
        literal("rue");
    else
        expect('f');
    if (!isTrue)
        literal("alse");
    return isTrue && !hasFailed();
}

void RawJson::skip() {
    std::string open; // what closes the lists and objects that the next value lies in
    const auto begin = [&](char closing) {
        if (open.size() >= deepest)
            fail("The export is damaged");
        open += closing;
        if (closing == '}')
            key();
    };
    do {
        const int next = peekValue();
        if (next == '{' || next == '[') {
            const char closing = next == '{' ? '}' : ']';
            piece_.remove_prefix(1);
            if (!take(closing)) {
                begin(closing);
                continue;
            }
        } else if (next == '"') {
            text();
        } else if (next == 't' || next == 'f') {
            boolean();
        } else if (next == 'n') {
            literal("null");
        } else {
            anyNumber();
        }
        while (!open.empty() && !hasFailed() && !take(',')) {
            expect(open.back());
            open.pop_back();
        }
        if (!open.empty() && open.back() == '}')
            key();
    } while (!open.empty() && !hasFailed());
}

} // namespace orbel

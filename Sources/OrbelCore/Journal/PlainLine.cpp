#include "Journal/PlainLine.h"

#include "Journal/EntryReader.h"
#include "Util/Utf8.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <system_error>

namespace orbel {

namespace {

enum class Byte : std::uint8_t { ascii, beyondAscii, other };

/// What a byte means within a string; a quote, a backslash and a control character are `other`.
constexpr auto byteKinds = [] {
    std::array<Byte, 256> kinds{};
    for (std::size_t byte = 0; byte < kinds.size(); ++byte)
        kinds[byte] = byte >= 0x80                                ? Byte::beyondAscii
                      : byte < ' ' || byte == '"' || byte == '\\' ? Byte::other
                                                                  : Byte::ascii;
    return kinds;
}();

class PlainParser {
public:
    PlainParser(std::string_view line, EntryReader& reader) : rest_(line), reader_(reader) {}

    bool readLine() { return object(deepest) && rest_.empty(); }

private:
    static constexpr int deepest = 8; ///< objects in objects; an entry has three

    bool take(char wanted) {
        const bool isNext = rest_.starts_with(wanted);
        rest_.remove_prefix(isNext ? 1 : 0);
        return isNext;
    }

    bool take(std::string_view wanted) {
        const bool isNext = rest_.starts_with(wanted);
        rest_.remove_prefix(isNext ? wanted.size() : 0);
        return isNext;
    }

    bool object(int depthLeft) {
        if (depthLeft == 0 || !take('{') || !reader_.beginObject())
            return false;
        do {
            const auto name = string();
            if (!name || !take(':') || !reader_.name(*name) || !value(depthLeft))
                return false;
        } while (take(','));
        return take('}') && reader_.endObject();
    }

    bool value(int depthLeft) {
        if (rest_.starts_with('"')) {
            const auto text = string();
            return text && reader_.text(*text);
        }
        if (rest_.starts_with('{'))
            return object(depthLeft - 1);
        if (take("true"))
            return reader_.truth(true);
        if (take("false"))
            return reader_.truth(false);
        if (take("null"))
            return reader_.null();
        return number();
    }

    std::optional<std::string_view> string() {
        if (!take('"'))
            return std::nullopt;
        std::size_t length = 0;
        bool isAscii = true;
        for (; length < rest_.size(); ++length) {
            const auto kind = byteKinds[static_cast<unsigned char>(rest_[length])];
            if (kind == Byte::other)
                break;
            isAscii = isAscii && kind == Byte::ascii;
        }
        const auto text = rest_.substr(0, length);
        rest_.remove_prefix(length);
        if (!take('"') || (!isAscii && !isValidUtf8(text)))
            return std::nullopt;
        return text;
    }

    bool number() {
        if (rest_.starts_with('-')) {
            const auto number = digits<std::int64_t>();
            return number && reader_.negativeNumber(*number);
        }
        const auto number = digits<std::uint64_t>();
        return number && reader_.number(*number);
    }

    /// Absent also where zeros lead, which JSON does not allow.
    template <class Number>
    std::optional<Number> digits() {
        Number number = 0;
        const auto* const begin = rest_.data();
        const auto [end, error] = std::from_chars(begin, begin + rest_.size(), number);
        const auto text = rest_.substr(0, static_cast<std::size_t>(end - begin));
        if (error != std::errc() || (text.size() > 1 && text.find('0') == text.find_first_of("0123456789")))
            return std::nullopt;
        rest_.remove_prefix(text.size());
        return number;
    }

    std::string_view rest_;
    EntryReader& reader_;
};

} // namespace

bool readPlainLine(std::string_view line, EntryReader& reader) {
    return PlainParser(line, reader).readLine();
}

} // namespace orbel

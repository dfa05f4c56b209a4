#include "Util/ParseNumber.h"

#include <charconv>
#include <locale>
#include <sstream>
#include <string>

namespace orbel {

std::optional<std::int64_t> parseInteger(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-'))
            return std::nullopt;
    }
    std::int64_t value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end)
        return std::nullopt;
    return value;
}

std::optional<double> parseDouble(std::string_view text) {
    // Not every library has from_chars for these, and strtod follows the user's locale.
    std::istringstream stream{std::string(text)};
    stream.imbue(std::locale::classic());
    double value = 0;
    if (!(stream >> std::noskipws >> value) || stream.peek() != std::istringstream::traits_type::eof())
        return std::nullopt;
    return value;
}

} // namespace orbel

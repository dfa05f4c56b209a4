#include "Safety/ByteFormat.h"

#include "Util/Check.h"

#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>

namespace orbel {

namespace {

/// Rounds as printf does, but ignores the locale. (The floating-point std::to_chars is not everywhere yet.)
std::string fixed(double value, int decimals) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::fixed << std::setprecision(decimals) << value;
    return text.str();
}

} // namespace

std::string ByteFormat::string(std::uint64_t bytes) {
    const auto value = static_cast<double>(bytes);
    if (bytes <= 999)
        return std::to_string(bytes) + " B";
    if (bytes <= 999'999)
        return fixed(value / 1e3, 0) + " KB";
    if (bytes <= 999'999'999)
        return fixed(value / 1e6, 0) + " MB";
    if (bytes <= 999'999'999'999)
        return fixed(value / 1e9, 1) + " GB";
    return fixed(value / 1e12, 2) + " TB";
}

ByteFormat::Parts ByteFormat::parts(std::uint64_t bytes) {
    const auto text = string(bytes);
    const auto blank = text.rfind(' ');
    return {.value = text.substr(0, blank), .unit = text.substr(blank + 1)};
}

std::string ByteFormat::signedString(std::int64_t bytes) {
    ORBEL_CHECK(bytes != std::numeric_limits<std::int64_t>::min(), "a count of bytes that can be negated");
    if (bytes >= 0)
        return string(static_cast<std::uint64_t>(bytes));
    return "\u2212" + string(static_cast<std::uint64_t>(-bytes));
}

} // namespace orbel

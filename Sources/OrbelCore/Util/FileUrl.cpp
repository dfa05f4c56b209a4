#include "Util/FileUrl.h"

#include <cstddef>

namespace orbel {

namespace {

constexpr std::string_view scheme = "file://";
constexpr std::string_view digits = "0123456789ABCDEF";

bool standsForItself(char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9')
           || byte == '-' || byte == '.' || byte == '_' || byte == '~' || byte == '/';
}

std::optional<unsigned> digitValue(char digit) {
    if (digit >= 'a' && digit <= 'f')
        digit = static_cast<char>(digit - 'a' + 'A');
    const auto value = digits.find(digit);
    return value == std::string_view::npos ? std::nullopt : std::optional(static_cast<unsigned>(value));
}

} // namespace

std::string fileUrl(std::string_view path) {
    std::string url(scheme);
    for (const char byte : path) {
        if (standsForItself(byte)) {
            url += byte;
            continue;
        }
        const auto value = static_cast<unsigned char>(byte);
        url += {'%', digits[value >> 4], digits[value & 0x0F]};
    }
    return url;
}

std::optional<std::string> pathOfFileUrl(std::string_view url) {
    if (!url.starts_with(scheme))
        return std::nullopt;
    url.remove_prefix(scheme.size());
    if (!url.starts_with('/'))
        return std::nullopt;
    std::string path;
    for (std::size_t i = 0; i < url.size(); ++i) {
        if (url[i] != '%') {
            path += url[i];
            continue;
        }
        const auto high = i + 2 < url.size() ? digitValue(url[i + 1]) : std::nullopt;
        const auto low = high ? digitValue(url[i + 2]) : std::nullopt;
        if (!low)
            return std::nullopt;
        path += static_cast<char>(*high << 4 | *low);
        i += 2;
    }
    return path;
}

} // namespace orbel

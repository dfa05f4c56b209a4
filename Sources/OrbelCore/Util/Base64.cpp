#include "Util/Base64.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace orbel {

std::string base64(std::string_view bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr std::size_t groupBytes = 3;
    std::string text;
    text.reserve((bytes.size() + 2) / groupBytes * 4);
    for (; !bytes.empty(); bytes.remove_prefix(std::min(groupBytes, bytes.size()))) {
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < groupBytes; ++i)
            group = group << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
        for (std::size_t digit = 0; digit <= groupBytes; ++digit)
            text += digit <= bytes.size() ? digits[group >> (18 - 6 * digit) & 63U] : '=';
    }
    return text;
}

} // namespace orbel

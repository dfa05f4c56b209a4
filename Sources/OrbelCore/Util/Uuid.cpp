#include "Util/Uuid.h"

#include "Util/Check.h"

#include <algorithm>
#include <cstddef>

#include <sys/random.h>

namespace orbel {

namespace {

constexpr std::string_view form = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX"; // an X stands for any digit
constexpr std::string_view digits = "0123456789ABCDEF";

/// From the kernel in one call. The processor's own generator, which std::random_device asks, takes a tenth
/// of a millisecond for each number on some virtual machines.
UuidBytes randomBytes() {
    UuidBytes bytes{};
    // An id that is not unique would make one line of the journal answer for another.
    ORBEL_CHECK(::getentropy(bytes.data(), bytes.size()) == 0, "the system gives no random numbers");
    return bytes;
}

} // namespace

std::string uuidText(const UuidBytes& uuid) {
    std::string text(form);
    std::size_t nibble = 0;
    for (char& digit : text) {
        if (digit != 'X')
            continue;
        digit = digits[(uuid[nibble / 2] >> (nibble % 2 == 0 ? 4 : 0)) & 0x0F];
        ++nibble;
    }
    return text;
}

std::string newUuid() {
    auto bytes = randomBytes();
    bytes[6] = static_cast<std::uint8_t>(0x40 | (bytes[6] & 0x0F)); // version 4
    bytes[8] = static_cast<std::uint8_t>(0x80 | (bytes[8] & 0x3F)); // the variant that RFC 9562 describes
    return uuidText(bytes);
}

bool isUuid(std::string_view text) {
    return std::ranges::equal(text, form, [](char given, char wanted) {
        return wanted == 'X' ? digits.find(given) != std::string_view::npos : given == wanted;
    });
}

} // namespace orbel

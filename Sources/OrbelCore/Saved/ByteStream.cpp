#include "Saved/ByteStream.h"

namespace orbel {

std::string ByteReader::text(std::size_t longest) {
    const auto size = number();
    if (size > longest || size > rest_.size()) {
        fail();
        return {};
    }
    std::string text(rest_.substr(0, size));
    rest_.remove_prefix(size);
    return text;
}

std::uint64_t ByteReader::numberUpTo(std::uint64_t largest) {
    const auto value = number();
    if (value <= largest)
        return value;
    fail();
    return 0;
}

} // namespace orbel

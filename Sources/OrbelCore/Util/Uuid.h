#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace orbel {

using UuidBytes = std::array<std::uint8_t, 16>;

/// A UUID in its canonical upper-case form: "F81D4FAE-7DEC-41D0-A765-00A0C91E6BF6".
std::string uuidText(const UuidBytes& uuid);

/// A new random UUID (version 4) in that form. Its 122 random bits are the system's; when the system gives
/// none, the process stops.
std::string newUuid();

/// Whether the text is a UUID in that form, of any version.
bool isUuid(std::string_view text);

} // namespace orbel

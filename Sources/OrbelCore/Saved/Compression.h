#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// Bytes as one frame of the Zstandard format, with a check sum of what is in it.
struct Packed {
    std::string frame;
    std::size_t size = 0; ///< of what is in it
};

/// A frame to read, which may come from anywhere.
struct Frame {
    std::string_view bytes;
    std::size_t size = 0; ///< of what is said to be in it
};

Packed packed(std::string_view bytes);

/// What is in a frame. Absent unless it is of the said size and the check sum agrees. Memory is taken for no
/// more than that size.
std::optional<std::string> unpacked(const Frame& frame);

} // namespace orbel

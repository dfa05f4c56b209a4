#pragma once

#include "Saved/Compression.h"

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// A file that begins with what tells it from all others, and then holds parts of bytes, each compressed.
struct FrameFile {
    FrameFile() = delete;

    static std::string bytesOf(std::span<const Packed> parts);

    /// Whether bytes, the first ones of a file at least, are those of such a file, whole or not.
    static bool isBegunBy(std::string_view bytes);

    /// The parts of a whole file, which point into `bytes`; only how they lie in it is checked. The error
    /// says in words for people why it is not believed.
    static std::expected<std::vector<Frame>, std::string> partsOf(std::string_view bytes);

    /// The first part, when `beginning` reaches to its end; nothing that lies behind it is looked at.
    static std::optional<Frame> firstPartIn(std::string_view beginning);

    /// What people read of a file whose content is not what it should be.
    static constexpr std::string_view damaged = "The scan file is damaged";
};

} // namespace orbel

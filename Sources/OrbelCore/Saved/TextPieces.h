#pragma once

#include "Util/FileDescriptor.h"

#include <expected>
#include <memory>
#include <string>
#include <string_view>

namespace orbel {

/// Gives a text of any length piece by piece, so that it is never in memory as a whole.
class TextPieces {
public:
    TextPieces() = default;
    TextPieces(const TextPieces&) = delete;
    TextPieces& operator=(const TextPieces&) = delete;
    virtual ~TextPieces() = default;

    /// The next piece, which is valid until the next call; empty at the end. The error is in words for
    /// people, and no call may follow it.
    virtual std::expected<std::string_view, std::string> next() = 0;
};

/// The text of an open file from its begin, or of bytes that live as long as the result. What gzip or
/// Zstandard compressed is the text that was, of which no more is given than what such a text grows to:
/// 256 MiB, or 64 times what is compressed.
std::unique_ptr<TextPieces> textPieces(FileDescriptor file);
std::unique_ptr<TextPieces> textPieces(std::string_view bytes);

} // namespace orbel

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace orbel {

/// The name by which an item goes in the Trash at the n-th attempt (from 1) to find a free one: its own name,
/// then the same with a number before the extension ("photo 2.jpg"). It takes at most `maxBytes` bytes, at
/// least 64 of which are needed: a longer name is cut before the extension, between two characters of UTF-8.
std::string trashName(std::string_view name, unsigned attempt, std::size_t maxBytes);

} // namespace orbel

#pragma once

#include <expected>
#include <string>

namespace orbel::platform {

/// Moves what lies at a path to the Trash; gives where it lies then, or the words of why it was not moved.
using SystemTrash = std::expected<std::string, std::string> (*)(const std::string& path);

/// The system's own call for that; null where it has none and programs keep the Trash themselves.
SystemTrash systemTrash();

} // namespace orbel::platform

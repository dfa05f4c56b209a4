#pragma once

#include <cstddef>
#include <optional>

namespace orbel::platform {

/// Whether the descriptor is a terminal that a person looks at.
bool isTerminal(int descriptor);

/// How many columns the terminal behind the descriptor has; absent when it does not say, or is none.
std::optional<std::size_t> terminalColumns(int descriptor);

} // namespace orbel::platform

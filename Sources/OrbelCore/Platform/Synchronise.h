#pragma once

#include <expected>

namespace orbel::platform {

/// Waits until what was written through the descriptor is on the disk itself: the content of a file, the
/// names in a folder. The error is an errno. It must not be tried again after a failure: what was lost then
/// counts as written.
std::expected<void, int> synchronise(int descriptor);

} // namespace orbel::platform

#pragma once

#include <cstdint>
#include <string_view>

namespace orbel {

/// Writes "file:line: broken invariant: what" to standard error and aborts the process.
[[noreturn]] void checkFailed(std::string_view what, const char* file, int line) noexcept;

} // namespace orbel

/// Stops the process when `condition` is false, in release builds too. For broken invariants and programming
/// errors only: what the environment can cause is a value that the caller handles.
#define ORBEL_CHECK(condition, what)                                                                         \
    do {                                                                                                     \
        if (!(condition)) [[unlikely]]                                                                       \
            ::orbel::checkFailed(what, __FILE__, __LINE__);                                                  \
    } while (false)

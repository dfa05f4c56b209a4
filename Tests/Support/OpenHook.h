#pragma once

#include <functional>
#include <string_view>

namespace orbel::test {

/// For as long as it lives, `before` is asked ahead of every openat() of this process what that is to fail
/// with: an errno, or 0 to let it go on. It gets the name that is to be opened; any thread may call it. One
/// at a time.
class OpenHook {
public:
    using Before = std::function<int(std::string_view name)>;

    explicit OpenHook(Before before);
    ~OpenHook();
    OpenHook(const OpenHook&) = delete;
    OpenHook& operator=(const OpenHook&) = delete;
};

} // namespace orbel::test

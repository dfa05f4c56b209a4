#pragma once

#include "Safety/FileIdentity.h"

#include <functional>

namespace orbel::test {

/// One flush to the disk that this process asks for.
struct Flush {
    FileIdentity file;  ///< which is flushed, or through which its whole file system is
    bool isAll = false; ///< of the file system

    bool operator==(const Flush&) const = default;
};

/// For as long as it lives, `before` is asked ahead of every fsync() and syncfs() of this process what that
/// is to fail with: an errno, or 0 to let it go on. Any thread may call it. One at a time.
class FlushHook {
public:
    using Before = std::function<int(const Flush&)>;

    explicit FlushHook(Before before);
    ~FlushHook();
    FlushHook(const FlushHook&) = delete;
    FlushHook& operator=(const FlushHook&) = delete;
};

} // namespace orbel::test

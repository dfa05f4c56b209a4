#pragma once

namespace orbel::platform {

/// Catches what Objective-C code autoreleases on this thread while the pool lives; without one it would be
/// kept until the thread ends. Pools nest and must be destroyed in reverse order on the thread that made
/// them. Does nothing when the Objective-C runtime cannot be opened.
class AutoreleasePool {
public:
    AutoreleasePool();
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;
    ~AutoreleasePool();

private:
    void* pool_ = nullptr;
};

} // namespace orbel::platform

#include "Platform/macOS/AutoreleasePool.h"

#include "Platform/macOS/SystemLibrary.h"

namespace orbel::platform {

namespace {

struct Runtime {
    SystemLibrary library{"/usr/lib/libobjc.A.dylib"};
    void* (*push)() = library.find<void*()>("objc_autoreleasePoolPush");
    void (*pop)(void*) = library.find<void(void*)>("objc_autoreleasePoolPop");
};

const Runtime& runtime() {
    static const Runtime opened;
    return opened;
}

} // namespace

AutoreleasePool::AutoreleasePool() {
    if (runtime().push != nullptr && runtime().pop != nullptr)
        pool_ = runtime().push();
}

AutoreleasePool::~AutoreleasePool() {
    if (pool_ != nullptr)
        runtime().pop(pool_);
}

} // namespace orbel::platform

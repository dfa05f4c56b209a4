#include "Platform/macOS/CoreFoundation.h"

#include <cstdint>

namespace orbel::platform::cf {

namespace {

struct Framework {
    SystemLibrary library{"/System/Library/Frameworks/CoreFoundation.framework/CoreFoundation"};
    Reference (*urlFromPath)(Reference allocator, const std::uint8_t* path, Index length,
                             Boolean isDirectory) =
        library.find<Reference(Reference, const std::uint8_t*, Index, Boolean)>(
            "CFURLCreateFromFileSystemRepresentation");
    TypeID (*typeOf)(Reference object) = library.find<TypeID(Reference)>("CFGetTypeID");
    void (*release)(Reference object) = library.find<void(Reference)>("CFRelease");
};

const Framework& framework() {
    static const Framework opened;
    return opened;
}

} // namespace

const SystemLibrary& library() {
    return framework().library;
}

bool isAvailable() {
    return framework().urlFromPath != nullptr && framework().typeOf != nullptr
           && framework().release != nullptr;
}

void Release::operator()(Reference object) const {
    framework().release(object);
}

Owned urlOfFile(const std::string& path) {
    // Whether it is a folder only decides on a closing slash, which leads to the same place.
    return Owned(framework().urlFromPath(nullptr, reinterpret_cast<const std::uint8_t*>(path.data()),
                                         static_cast<Index>(path.size()), false));
}

bool isOf(Reference object, TypeID (*type)()) {
    return object != nullptr && framework().typeOf(object) == type();
}

} // namespace orbel::platform::cf

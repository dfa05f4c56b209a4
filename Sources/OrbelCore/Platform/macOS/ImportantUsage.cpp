#include "Platform/macOS/ImportantUsage.h"

#include "Platform/macOS/AutoreleasePool.h"
#include "Platform/macOS/SystemLibrary.h"

#include <memory>

namespace orbel::platform {

namespace {

// The types of Core Foundation, as its headers declare them.
using Reference = const void*; // CFTypeRef and every reference that stands for a class of it
using Boolean = unsigned char;
using Index = long;

struct CoreFoundation {
    SystemLibrary library{"/System/Library/Frameworks/CoreFoundation.framework/CoreFoundation"};
    Reference (*urlFromPath)(Reference allocator, const std::uint8_t* path, Index length,
                             Boolean isDirectory) =
        library.find<Reference(Reference, const std::uint8_t*, Index, Boolean)>(
            "CFURLCreateFromFileSystemRepresentation");
    Boolean (*copyResourceProperty)(Reference url, Reference key, void* value, Reference* error) =
        library.find<Boolean(Reference, Reference, void*, Reference*)>("CFURLCopyResourcePropertyForKey");
    Index (*typeOf)(Reference object) = library.find<Index(Reference)>("CFGetTypeID");
    Index (*numberType)() = library.find<Index()>("CFNumberGetTypeID");
    Boolean (*numberValue)(Reference number, Index kind,
                           void* value) = library.find<Boolean(Reference, Index, void*)>("CFNumberGetValue");
    void (*release)(Reference object) = library.find<void(Reference)>("CFRelease");
    const Reference* importantUsageKey =
        library.find<const Reference>("kCFURLVolumeAvailableCapacityForImportantUsageKey");

    bool isComplete() const {
        return urlFromPath != nullptr && copyResourceProperty != nullptr && typeOf != nullptr
               && numberType != nullptr && numberValue != nullptr && release != nullptr
               && importantUsageKey != nullptr;
    }
};

const CoreFoundation& coreFoundation() {
    static const CoreFoundation opened;
    return opened;
}

struct Release {
    void operator()(Reference object) const { coreFoundation().release(object); }
};
using Owned = std::unique_ptr<const void, Release>;

} // namespace

std::optional<std::uint64_t> importantUsageCapacity(const std::string& path) {
    const auto& framework = coreFoundation();
    if (!framework.isComplete())
        return std::nullopt;
    const AutoreleasePool pool;
    // Whether it is a folder only decides on a closing slash, which does not change the volume.
    const Owned url(framework.urlFromPath(nullptr, reinterpret_cast<const std::uint8_t*>(path.data()),
                                          static_cast<Index>(path.size()), false));
    if (!url)
        return std::nullopt;
    Reference property = nullptr;
    if (!framework.copyResourceProperty(url.get(), *framework.importantUsageKey, &property, nullptr))
        return std::nullopt;
    const Owned number(property); // null when the volume has no such value
    constexpr Index signed64 = 4; // kCFNumberSInt64Type
    std::int64_t bytes = 0;
    if (!number || framework.typeOf(number.get()) != framework.numberType()
        || !framework.numberValue(number.get(), signed64, &bytes) || bytes < 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(bytes);
}

} // namespace orbel::platform

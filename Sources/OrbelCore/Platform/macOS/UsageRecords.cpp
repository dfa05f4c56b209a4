#include "Platform/UsageRecords.h"

#include "Platform/macOS/AutoreleasePool.h"
#include "Platform/macOS/SystemLibrary.h"

#include <cmath>
#include <memory>

namespace orbel::platform {

namespace {

// The types of Core Foundation, as its headers declare them.
using Reference = const void*; // CFTypeRef and every reference that stands for a class of it
using Boolean = unsigned char;
using Index = long;

/// Core Services, whose libraries bring the metadata index and Core Foundation along.
struct Metadata {
    SystemLibrary library{"/System/Library/Frameworks/CoreServices.framework/CoreServices"};
    Reference (*stringFromPath)(Reference allocator, const char* path) =
        library.find<Reference(Reference, const char*)>("CFStringCreateWithFileSystemRepresentation");
    Reference (*itemAt)(Reference allocator,
                        Reference path) = library.find<Reference(Reference, Reference)>("MDItemCreate");
    Reference (*attributeOf)(Reference item, Reference name) =
        library.find<Reference(Reference, Reference)>("MDItemCopyAttribute");
    Index (*typeOf)(Reference object) = library.find<Index(Reference)>("CFGetTypeID");
    Index (*dateType)() = library.find<Index()>("CFDateGetTypeID");
    double (*absoluteTime)(Reference date) = library.find<double(Reference)>("CFDateGetAbsoluteTime");
    void (*release)(Reference object) = library.find<void(Reference)>("CFRelease");
    const Reference* lastUsedDate = library.find<const Reference>("kMDItemLastUsedDate");

    bool isComplete() const {
        return stringFromPath != nullptr && itemAt != nullptr && attributeOf != nullptr && typeOf != nullptr
               && dateType != nullptr && absoluteTime != nullptr && release != nullptr
               && lastUsedDate != nullptr;
    }
};

const Metadata& metadata() {
    static const Metadata opened;
    return opened;
}

struct Release {
    void operator()(Reference object) const { metadata().release(object); }
};
using Owned = std::unique_ptr<const void, Release>;

std::optional<UsageRecord> lastUse(const std::string& path) {
    const auto& index = metadata();
    if (!index.isComplete())
        return std::nullopt;
    const AutoreleasePool pool;
    const Owned name(index.stringFromPath(nullptr, path.c_str()));
    const Owned item(name ? index.itemAt(nullptr, name.get()) : nullptr);
    const Owned date(item ? index.attributeOf(item.get(), *index.lastUsedDate) : nullptr);
    if (!date || index.typeOf(date.get()) != index.dateType())
        return std::nullopt;
    constexpr double from1970To2001 = 978'307'200; // seconds; the system counts from 2001
    constexpr double farthest = 1e12;              // seconds; beyond every year that can be written down
    const double seconds = index.absoluteTime(date.get()) + from1970To2001;
    if (!(std::abs(seconds) < farthest))
        return std::nullopt;
    return UsageRecord{.date = Date(std::chrono::microseconds(static_cast<std::int64_t>(seconds * 1e6))),
                       .keeper = UsageRecord::Keeper::index};
}

} // namespace

UsageLookup usageLookup(const std::string& /*home*/) {
    return lastUse;
}

} // namespace orbel::platform

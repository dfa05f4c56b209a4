#include "Platform/AliasFile.h"

#include "Platform/macOS/AutoreleasePool.h"
#include "Platform/macOS/SystemLibrary.h"

#include <array>
#include <climits>
#include <cstdint>
#include <memory>

namespace orbel::platform {

namespace {

// The types of Core Foundation, as its headers declare them.
using Reference = const void*; // CFTypeRef and every reference that stands for a class of it
using Boolean = unsigned char;
using Index = long;
using Options = unsigned long;

struct Bookmarks {
    SystemLibrary library{"/System/Library/Frameworks/CoreFoundation.framework/CoreFoundation"};
    Reference (*urlFromPath)(Reference allocator, const std::uint8_t* path, Index length,
                             Boolean isDirectory) =
        library.find<Reference(Reference, const std::uint8_t*, Index, Boolean)>(
            "CFURLCreateFromFileSystemRepresentation");
    Reference (*bookmarkIn)(Reference allocator, Reference url, Reference* error) =
        library.find<Reference(Reference, Reference, Reference*)>("CFURLCreateBookmarkDataFromFile");
    Reference (*resolve)(Reference allocator, Reference bookmark, Options options, Reference relativeTo,
                         Reference properties, Boolean* isStale, Reference* error) =
        library.find<Reference(Reference, Reference, Options, Reference, Reference, Boolean*, Reference*)>(
            "CFURLCreateByResolvingBookmarkData");
    Reference (*property)(Reference allocator, Reference key, Reference bookmark) =
        library.find<Reference(Reference, Reference, Reference)>(
            "CFURLCreateResourcePropertyForKeyFromBookmarkData");
    Boolean (*pathBytes)(Reference string, char* buffer, Index size) =
        library.find<Boolean(Reference, char*, Index)>("CFStringGetFileSystemRepresentation");
    Index (*typeOf)(Reference object) = library.find<Index(Reference)>("CFGetTypeID");
    Index (*stringType)() = library.find<Index()>("CFStringGetTypeID");
    void (*release)(Reference object) = library.find<void(Reference)>("CFRelease");
    const Reference* pathKey = library.find<const Reference>("kCFURLPathKey");

    bool isComplete() const {
        return urlFromPath != nullptr && bookmarkIn != nullptr && resolve != nullptr && property != nullptr
               && pathBytes != nullptr && typeOf != nullptr && stringType != nullptr && release != nullptr
               && pathKey != nullptr;
    }
};

const Bookmarks& bookmarks() {
    static const Bookmarks opened;
    return opened;
}

struct Release {
    void operator()(Reference object) const { bookmarks().release(object); }
};
using Owned = std::unique_ptr<const void, Release>;

std::optional<std::string> lastPathIn(Reference bookmark) {
    const auto& framework = bookmarks();
    const Owned path(framework.property(nullptr, *framework.pathKey, bookmark));
    std::array<char, PATH_MAX> bytes{};
    if (!path || framework.typeOf(path.get()) != framework.stringType()
        || !framework.pathBytes(path.get(), bytes.data(), static_cast<Index>(bytes.size())))
        return std::nullopt;
    return std::string(bytes.data());
}

} // namespace

std::optional<AliasTarget> aliasTarget(const std::string& path) {
    const auto& framework = bookmarks();
    if (!framework.isComplete())
        return std::nullopt;
    const AutoreleasePool pool;
    const Owned url(framework.urlFromPath(nullptr, reinterpret_cast<const std::uint8_t*>(path.data()),
                                          static_cast<Index>(path.size()), false));
    const Owned bookmark(url ? framework.bookmarkIn(nullptr, url.get(), nullptr) : nullptr);
    if (!bookmark)
        return std::nullopt;
    constexpr Options withoutUiOrMounting = 1UL << 8 | 1UL << 9;
    Boolean isStale = false;
    const Owned target(
        framework.resolve(nullptr, bookmark.get(), withoutUiOrMounting, nullptr, nullptr, &isStale, nullptr));
    return AliasTarget{.isFound = target != nullptr, .lastPath = lastPathIn(bookmark.get())};
}

} // namespace orbel::platform

#include "Platform/AliasFile.h"

#include "Platform/macOS/AutoreleasePool.h"
#include "Platform/macOS/CoreFoundation.h"

#include <array>
#include <climits>

namespace orbel::platform {

namespace {

using namespace cf;

struct Bookmarks {
    Reference (*bookmarkIn)(Reference allocator, Reference url, Reference* error) =
        library().find<Reference(Reference, Reference, Reference*)>("CFURLCreateBookmarkDataFromFile");
    Reference (*resolve)(Reference allocator, Reference bookmark, Options options, Reference relativeTo,
                         Reference properties, Boolean* isStale, Reference* error) =
        library().find<Reference(Reference, Reference, Options, Reference, Reference, Boolean*, Reference*)>(
            "CFURLCreateByResolvingBookmarkData");
    Reference (*property)(Reference allocator, Reference key, Reference bookmark) =
        library().find<Reference(Reference, Reference, Reference)>(
            "CFURLCreateResourcePropertyForKeyFromBookmarkData");
    Boolean (*pathBytes)(Reference string, char* buffer, Index size) =
        library().find<Boolean(Reference, char*, Index)>("CFStringGetFileSystemRepresentation");
    TypeID (*stringType)() = library().find<TypeID()>("CFStringGetTypeID");
    const Reference* pathKey = library().find<const Reference>("kCFURLPathKey");

    bool isComplete() const {
        return isAvailable() && bookmarkIn != nullptr && resolve != nullptr && property != nullptr
               && pathBytes != nullptr && stringType != nullptr && pathKey != nullptr;
    }
};

const Bookmarks& bookmarks() {
    static const Bookmarks opened;
    return opened;
}

std::optional<std::string> lastPathIn(Reference bookmark) {
    const auto& framework = bookmarks();
    const Owned path(framework.property(nullptr, *framework.pathKey, bookmark));
    std::array<char, PATH_MAX> bytes{};
    if (!isOf(path.get(), framework.stringType)
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
    const auto url = urlOfFile(path);
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

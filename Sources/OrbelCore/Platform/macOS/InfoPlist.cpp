#include "Platform/macOS/InfoPlist.h"

#include "Platform/macOS/SystemLibrary.h"
#include "Util/ReadFile.h"

#include <array>
#include <cstdint>
#include <memory>

namespace orbel::platform {

namespace {

// The types of Core Foundation, as its headers declare them.
using Reference = const void*; // CFTypeRef and every reference that stands for a class of it
using Boolean = unsigned char;
using Index = long;
using Options = unsigned long;
using Encoding = std::uint32_t;

constexpr Encoding utf8 = 0x08000100; // kCFStringEncodingUTF8

struct CoreFoundation {
    SystemLibrary library{"/System/Library/Frameworks/CoreFoundation.framework/CoreFoundation"};
    Reference (*dataFromBytes)(Reference allocator, const std::uint8_t* bytes, Index length) =
        library.find<Reference(Reference, const std::uint8_t*, Index)>("CFDataCreate");
    Reference (*propertyList)(Reference allocator, Reference data, Options options, Index* format,
                              Reference* error) =
        library.find<Reference(Reference, Reference, Options, Index*, Reference*)>(
            "CFPropertyListCreateWithData");
    Reference (*text)(Reference allocator, const char* bytes, Encoding encoding) =
        library.find<Reference(Reference, const char*, Encoding)>("CFStringCreateWithCString");
    Boolean (*bytesOf)(Reference text, char* buffer, Index size, Encoding encoding) =
        library.find<Boolean(Reference, char*, Index, Encoding)>("CFStringGetCString");
    Reference (*valueIn)(Reference dictionary, const void* key) =
        library.find<Reference(Reference, const void*)>("CFDictionaryGetValue");
    Options (*typeOf)(Reference object) = library.find<Options(Reference)>("CFGetTypeID");
    Options (*dictionaryType)() = library.find<Options()>("CFDictionaryGetTypeID");
    Options (*textType)() = library.find<Options()>("CFStringGetTypeID");
    void (*release)(Reference object) = library.find<void(Reference)>("CFRelease");

    bool isComplete() const {
        return dataFromBytes != nullptr && propertyList != nullptr && text != nullptr && bytesOf != nullptr
               && valueIn != nullptr && typeOf != nullptr && dictionaryType != nullptr && textType != nullptr
               && release != nullptr;
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

std::string textIn(Reference dictionary, const char* key) {
    const auto& framework = coreFoundation();
    const Owned name(framework.text(nullptr, key, utf8));
    Reference value = name ? framework.valueIn(dictionary, name.get()) : nullptr; // belongs to the dictionary
    std::array<char, 4096> buffer{};
    if (value == nullptr || framework.typeOf(value) != framework.textType()
        || framework.bytesOf(value, buffer.data(), static_cast<Index>(buffer.size()), utf8) == 0)
        return {};
    return buffer.data();
}

} // namespace

std::optional<InfoPlist> readInfoPlist(const std::string& path) {
    const auto& framework = coreFoundation();
    constexpr std::uint64_t mostBytes = 4 * 1024 * 1024;
    const auto content = framework.isComplete() ? readRegularFile(path, mostBytes) : std::nullopt;
    if (!content)
        return std::nullopt;
    const Owned data(framework.dataFromBytes(nullptr, reinterpret_cast<const std::uint8_t*>(content->data()),
                                             static_cast<Index>(content->size())));
    if (!data)
        return std::nullopt;
    const Owned list(framework.propertyList(nullptr, data.get(), 0, nullptr, nullptr));
    if (!list || framework.typeOf(list.get()) != framework.dictionaryType())
        return std::nullopt;
    return InfoPlist{.identifier = textIn(list.get(), "CFBundleIdentifier"),
                     .name = textIn(list.get(), "CFBundleName"),
                     .displayName = textIn(list.get(), "CFBundleDisplayName"),
                     .version = textIn(list.get(), "CFBundleShortVersionString")};
}

} // namespace orbel::platform

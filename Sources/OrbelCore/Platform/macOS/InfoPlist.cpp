#include "Platform/macOS/InfoPlist.h"

#include "Platform/macOS/CoreFoundation.h"
#include "Util/ReadFile.h"

#include <array>
#include <cstdint>

namespace orbel::platform {

namespace {

using namespace cf;
using Encoding = std::uint32_t;

constexpr Encoding utf8 = 0x08000100; // kCFStringEncodingUTF8

struct PropertyLists {
    Reference (*dataFromBytes)(Reference allocator, const std::uint8_t* bytes, Index length) =
        library().find<Reference(Reference, const std::uint8_t*, Index)>("CFDataCreate");
    Reference (*propertyList)(Reference allocator, Reference data, Options options, Index* format,
                              Reference* error) =
        library().find<Reference(Reference, Reference, Options, Index*, Reference*)>(
            "CFPropertyListCreateWithData");
    Reference (*text)(Reference allocator, const char* bytes, Encoding encoding) =
        library().find<Reference(Reference, const char*, Encoding)>("CFStringCreateWithCString");
    Boolean (*bytesOf)(Reference text, char* buffer, Index size, Encoding encoding) =
        library().find<Boolean(Reference, char*, Index, Encoding)>("CFStringGetCString");
    Reference (*valueIn)(Reference dictionary, const void* key) =
        library().find<Reference(Reference, const void*)>("CFDictionaryGetValue");
    TypeID (*dictionaryType)() = library().find<TypeID()>("CFDictionaryGetTypeID");
    TypeID (*textType)() = library().find<TypeID()>("CFStringGetTypeID");

    bool isComplete() const {
        return isAvailable() && dataFromBytes != nullptr && propertyList != nullptr && text != nullptr
               && bytesOf != nullptr && valueIn != nullptr && dictionaryType != nullptr
               && textType != nullptr;
    }
};

const PropertyLists& propertyLists() {
    static const PropertyLists opened;
    return opened;
}

std::string textIn(Reference dictionary, const char* key) {
    const auto& framework = propertyLists();
    const Owned name(framework.text(nullptr, key, utf8));
    Reference value = name ? framework.valueIn(dictionary, name.get()) : nullptr; // belongs to the dictionary
    std::array<char, 4096> buffer{};
    if (!isOf(value, framework.textType)
        || framework.bytesOf(value, buffer.data(), static_cast<Index>(buffer.size()), utf8) == 0)
        return {};
    return buffer.data();
}

} // namespace

std::optional<InfoPlist> readInfoPlist(const std::string& path) {
    const auto& framework = propertyLists();
    constexpr std::uint64_t mostBytes = 4 * 1024 * 1024;
    const auto content = framework.isComplete() ? readRegularFile(path, mostBytes) : std::nullopt;
    if (!content)
        return std::nullopt;
    const Owned data(framework.dataFromBytes(nullptr, reinterpret_cast<const std::uint8_t*>(content->data()),
                                             static_cast<Index>(content->size())));
    if (!data)
        return std::nullopt;
    const Owned list(framework.propertyList(nullptr, data.get(), 0, nullptr, nullptr));
    if (!isOf(list.get(), framework.dictionaryType))
        return std::nullopt;
    return InfoPlist{.identifier = textIn(list.get(), "CFBundleIdentifier"),
                     .name = textIn(list.get(), "CFBundleName"),
                     .displayName = textIn(list.get(), "CFBundleDisplayName"),
                     .version = textIn(list.get(), "CFBundleShortVersionString")};
}

} // namespace orbel::platform

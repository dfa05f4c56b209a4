#include "Scan/FileKind.h"

#include "Scan/ExtensionTable.h"

#include <algorithm>
#include <cstddef>

namespace orbel {

using std::string_view;

string_view extensionIn(string_view name, std::size_t longest) {
    const auto dot = name.rfind('.');
    if (dot == string_view::npos || dot == 0)
        return {};
    const string_view extension = name.substr(dot + 1);
    if (extension.size() <= longest)
        return extension;
    const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
    const auto characters = static_cast<std::size_t>(std::ranges::count_if(extension, isFirstByte));
    return characters <= longest ? extension : string_view{};
}

namespace {

/// The most characters of a listed extension.
constexpr std::size_t longestListed = 13;

struct Listed {
    FileKind kind = FileKind::other;
    bool hasKind = false;
    bool isPackage = false;
};

constexpr std::array packages{
    "app",           "appex",        "framework",    "bundle",    "plugin",        "kext",         "xpc",
    "photoslibrary", "photolibrary", "musiclibrary", "tvlibrary", "imovielibrary", "fcpbundle",    "logicx",
    "band",          "rtfd",         "pages",        "numbers",   "key",           "sparsebundle", "utm",
    "pvm",           "vmwarevm",     "xcarchive",    "xcodeproj", "xcworkspace",   "playground",   "docset",
    "mlmodelc",      "scptd",        "wdgt",         "pkg",       "mpkg"};
static_assert(packages.size() == 33);

constexpr auto table = [] {
    ExtensionTable<Listed, 512> listed;
    for (const KindRow& row : kindTable)
        forEachExtension(row.extensions, [&](string_view extension) {
            listed[extension].kind = row.kind;
            listed[extension].hasKind = true;
        });
    for (const string_view extension : packages)
        listed[extension].isPackage = true;
    return listed;
}();

} // namespace

FileKind fileKindFromRawValue(std::uint8_t rawValue) {
    return rawValue < allFileKinds.size() ? static_cast<FileKind>(rawValue) : FileKind::other;
}

FileKind classify(string_view name, bool isFolder, bool isPackage) {
    if (name == "Docker.raw")
        return FileKind::virtualMachine;
    if (isFolder && !isPackage)
        return FileKind::folder;
    const Listed* const listed = table.find(extensionIn(name));
    if (listed != nullptr && listed->hasKind)
        return listed->kind;
    return isPackage ? FileKind::folder : FileKind::other;
}

bool isPackage(string_view name) {
    // "photoslibrary" and "imovielibrary" have 13 characters, one more than an extension may have to
    // tell a kind.
    const Listed* const listed = table.find(extensionIn(name, longestListed));
    return listed != nullptr && listed->isPackage;
}

std::optional<std::string> pathExtension(string_view name) {
    const string_view extension = extensionIn(name);
    if (extension.empty())
        return std::nullopt;
    std::string lowered(extension);
    std::ranges::transform(lowered, lowered.begin(), ExtensionKey::lower);
    return lowered;
}

std::optional<FileKind> kindByExtension(string_view extension) {
    const Listed* const listed = table.find(extension);
    if (listed == nullptr || !listed->hasKind)
        return std::nullopt;
    return listed->kind;
}

} // namespace orbel

#include "Scan/FileKind.h"

#include <algorithm>
#include <cstddef>

namespace orbel {

namespace {

using std::string_view;

// A listed extension is at most 13 bytes long, so it fits one 16-byte key; the look-up then
// compares two words.
struct Key {
    std::uint64_t low = 0;
    std::uint64_t high = 0;
    constexpr bool operator==(const Key&) const = default;
};

constexpr std::size_t longestListed = 13;
constexpr std::size_t longestExtension = 12;

constexpr char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr Key keyOf(string_view text) {
    Key key;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<std::uint64_t>(static_cast<unsigned char>(lower(text[i])));
        if (i < 8)
            key.low |= byte << (8 * i);
        else
            key.high |= byte << (8 * (i - 8));
    }
    return key;
}

struct Listed {
    Key key;
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

/// Open addressing with linear probing, filled when the program is compiled; under a third full, so a look-up
/// that finds nothing, which is what most names do, ends at once.
class ExtensionTable {
public:
    constexpr ExtensionTable() {
        for (const KindRow& row : kindTable)
            addKind(row.extensions, row.kind);
        for (const string_view extension : packages)
            slotOf(keyOf(extension)).isPackage = true;
    }

    constexpr const Listed* find(Key key) const {
        for (std::size_t i = indexOf(key);; i = (i + 1) % slots_.size()) {
            if (slots_[i].key == key)
                return &slots_[i];
            if (slots_[i].key == Key{})
                return nullptr;
        }
    }

private:
    constexpr void addKind(string_view extensions, FileKind kind) {
        while (!extensions.empty()) {
            const string_view extension = extensions.substr(0, extensions.find(' '));
            ORBEL_CHECK(extension.size() <= longestExtension, "no name has so long an extension");
            Listed& slot = slotOf(keyOf(extension));
            slot.kind = kind;
            slot.hasKind = true;
            extensions.remove_prefix(std::min(extension.size() + 1, extensions.size()));
        }
    }

    constexpr Listed& slotOf(Key key) {
        std::size_t i = indexOf(key);
        while (!(slots_[i].key == key) && !(slots_[i].key == Key{}))
            i = (i + 1) % slots_.size();
        slots_[i].key = key;
        return slots_[i];
    }

    static constexpr std::size_t indexOf(Key key) {
        return static_cast<std::size_t>(((key.low ^ (key.high * 31)) * 0x9E3779B97F4A7C15U) >> 55U);
    }

    std::array<Listed, 512> slots_{};
};

constexpr ExtensionTable table;

/// What follows the last dot when it is an extension of at most `longest` characters; empty when
/// there is none.
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

const Listed* listedExtension(string_view extension) {
    if (extension.empty() || extension.size() > longestListed)
        return nullptr;
    return table.find(keyOf(extension));
}

} // namespace

FileKind fileKindFromRawValue(std::uint8_t rawValue) {
    return rawValue < allFileKinds.size() ? static_cast<FileKind>(rawValue) : FileKind::other;
}

FileKind classify(string_view name, bool isFolder, bool isPackage) {
    if (name == "Docker.raw")
        return FileKind::virtualMachine;
    if (isFolder && !isPackage)
        return FileKind::folder;
    const Listed* const listed = listedExtension(extensionIn(name, longestExtension));
    if (listed != nullptr && listed->hasKind)
        return listed->kind;
    return isPackage ? FileKind::folder : FileKind::other;
}

bool isPackage(string_view name) {
    // "photoslibrary" and "imovielibrary" have 13 characters, one more than an extension may have to
    // tell a kind.
    const Listed* const listed = listedExtension(extensionIn(name, longestListed));
    return listed != nullptr && listed->isPackage;
}

std::optional<std::string> pathExtension(string_view name) {
    const string_view extension = extensionIn(name, longestExtension);
    if (extension.empty())
        return std::nullopt;
    std::string lowered(extension);
    std::ranges::transform(lowered, lowered.begin(), lower);
    return lowered;
}

std::optional<FileKind> kindByExtension(string_view extension) {
    const Listed* const listed = listedExtension(extension);
    if (listed == nullptr || !listed->hasKind)
        return std::nullopt;
    return listed->kind;
}

} // namespace orbel

#pragma once

#include "Util/Check.h"
#include "Util/RawValue.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// What a node is to a person, derived from its name alone. The raw values are stored in the tree
/// and in exports.
enum class FileKind : std::uint8_t {
    folder = 0,
    video = 1,
    diskImage = 2,
    archive = 3,
    document = 4,
    application = 5,
    virtualMachine = 6,
    other = 7
};

/// A colour as 0xRRGGBB.
using Rgb = std::uint32_t;

/// All that is said of a kind. A plain value.
struct KindRow {
    struct Paint {
        Rgb fill;
        Rgb label; ///< of words and glyph on the fill
    };

    FileKind kind;
    std::string_view name;  ///< its raw name
    std::string_view title; ///< in the plural, as lists and legends show it
    Paint light;
    Paint dark;
    std::string_view glyph;      ///< SVG path data in a square of 16, for round strokes of 1.4, unfilled
    std::string_view extensions; ///< in lower case, separated by spaces; 12 characters each at most
};

/// A row for each kind; folders take up something themselves only where a package has no kind of its own.
/// What screens draw and list is told finer, by ContentKind, which takes these rows over. Any two kinds can
/// be told apart with the usual forms of colour blindness too, and every label is legible on its fill.
inline constexpr std::array kindTable{
    KindRow{.kind = FileKind::video,
            .name = "video",
            .title = "Video",
            .light = {.fill = 0xD5B4F9, .label = 0x15211F},
            .dark = {.fill = 0xA18FD3, .label = 0x0C1414},
            .glyph = "M2 4h8v8H2zM10 7.2l4-2.2v6l-4-2.2z",
            .extensions = "mp4 mov m4v mkv avi wmv flv webm mpg mpeg mts m2ts 3gp braw r3d mxf insv lrv"},
    KindRow{.kind = FileKind::virtualMachine,
            .name = "virtualMachine",
            .title = "Virtual machines",
            .light = {.fill = 0xCA7C4E, .label = 0x15211F},
            .dark = {.fill = 0x944821, .label = 0xFFFFFF},
            .glyph = "M2 3h12v8H2zM5.5 14h5M8 11v3",
            .extensions = "vmdk qcow2 utm vdi vhd vhdx pvm vmwarevm hdd"},
    KindRow{.kind = FileKind::diskImage,
            .name = "diskImage",
            .title = "Disk images",
            .light = {.fill = 0x779BD9, .label = 0x15211F},
            .dark = {.fill = 0x245883, .label = 0xFFFFFF},
            .glyph = "M14 8a6 6 0 1 1-12 0a6 6 0 0 1 12 0zM9.5 8a1.5 1.5 0 1 1-3 0a1.5 1.5 0 0 1 3 0z",
            .extensions = "dmg iso img sparseimage sparsebundle toast cdr"},
    KindRow{.kind = FileKind::archive,
            .name = "archive",
            .title = "Archives",
            .light = {.fill = 0xCDAE54, .label = 0x15211F},
            .dark = {.fill = 0xBD9D54, .label = 0x0C1414},
            .glyph = "M2.5 3h11v3h-11zM3.5 6v7.5h9V6M6.5 8.8h3",
            .extensions = "zip tar gz tgz bz2 xz 7z rar zst lz4 xip pkg mpkg"},
    KindRow{.kind = FileKind::document,
            .name = "document",
            .title = "Documents",
            .light = {.fill = 0xB6EAF4, .label = 0x15211F},
            .dark = {.fill = 0x7FACA5, .label = 0x0C1414},
            .glyph = "M4 2h5.5L12.5 5v9H4zM9.5 2v3h3",
            .extensions = "pdf doc docx xls xlsx ppt pptx pages numbers key txt rtf rtfd md csv epub psd ai "
                          "sketch fig"},
    KindRow{.kind = FileKind::application,
            .name = "application",
            .title = "Apps",
            .light = {.fill = 0xABD6A6, .label = 0x15211F},
            .dark = {.fill = 0x789175, .label = 0x0C1414},
            .glyph = "M3 3h10v10H3zM3 6.2h10",
            .extensions = "app ipa apk exe appex"},
    KindRow{.kind = FileKind::folder,
            .name = "folder",
            .title = "Folders",
            .light = {.fill = 0x8D9493, .label = 0x15211F},
            .dark = {.fill = 0x5C6968, .label = 0xFFFFFF},
            .glyph = "M2 12.5v-9h4.2L7.7 5H14v7.5z",
            .extensions = ""},
    KindRow{.kind = FileKind::other,
            .name = "other",
            .title = "Other",
            .light = {.fill = 0xAAB1B2, .label = 0x15211F},
            .dark = {.fill = 0x404645, .label = 0xFFFFFF},
            .glyph = "M8 3l5 5l-5 5l-5-5z",
            .extensions = ""},
};

/// The rows by raw value. A kind with two rows, or with none in between, does not compile.
inline constexpr auto kindRows = [] {
    std::array<const KindRow*, kindTable.size()> rows{};
    for (const KindRow& row : kindTable) {
        auto& place = rows.at(static_cast<std::size_t>(row.kind));
        ORBEL_CHECK(place == nullptr, "two rows of one kind");
        place = &row;
    }
    return rows;
}();

constexpr const KindRow& rowOf(FileKind kind) {
    return *kindRows.at(static_cast<std::size_t>(kind));
}

/// By raw value.
inline constexpr auto allFileKinds = [] {
    std::array<FileKind, kindRows.size()> kinds{};
    std::ranges::transform(kindRows, kinds.begin(), &KindRow::kind);
    return kinds;
}();

template <>
struct RawValues<FileKind> {
    static constexpr auto names = [] {
        std::array<std::string_view, kindRows.size()> all;
        std::ranges::transform(kindRows, all.begin(), &KindRow::name);
        return all;
    }();
};

constexpr std::string_view title(FileKind kind) {
    return rowOf(kind).title;
}

/// The kind of that raw value; `other` for an invalid value.
FileKind fileKindFromRawValue(std::uint8_t rawValue);

/// The kind of an entry of this name. Names are raw bytes; only ASCII letters are compared
/// regardless of case.
FileKind classify(std::string_view name, bool isFolder, bool isPackage);

/// Whether a directory of this name is shown as one item.
bool isPackage(std::string_view name);

/// The lower-cased text after the last dot. None when there is no dot, the last one is the first character,
/// nothing follows it, or more than 12 characters do.
std::optional<std::string> pathExtension(std::string_view name);

/// The kind that files of this lower-case extension have; absent when it is not a listed one.
std::optional<FileKind> kindByExtension(std::string_view extension);

} // namespace orbel

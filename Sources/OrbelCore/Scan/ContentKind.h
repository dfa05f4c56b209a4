#pragma once

#include "Scan/FileTree.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orbel {

/// What a node is as it is drawn, listed and filtered: FileKind, told finer. It follows from the name and the
/// FileKind, so it is stored nowhere. The first values are those of FileKind.
enum class ContentKind : std::uint8_t {
    folder,
    video,
    diskImage,
    archive,
    document,
    application,
    virtualMachine,
    other,
    picture,
    music,
    sourceCode,
    buildOutput,
    package,
    database,
    log
};

constexpr ContentKind sameContent(FileKind kind) {
    return static_cast<ContentKind>(kind);
}

/// All that is drawn and said of a kind. A plain value.
struct ContentRow {
    using Paint = KindRow::Paint;

    ContentKind kind;
    std::string_view title; ///< in the plural, as lists and legends show it
    Paint light;
    Paint dark;
    std::string_view glyph;      ///< as that of a KindRow
    std::string_view extensions; ///< in lower case, separated by spaces; 12 characters each at most

    /// The row of the same kind among the FileKinds.
    static consteval ContentRow of(FileKind kind) {
        const KindRow& row = rowOf(kind);
        return {.kind = sameContent(kind),
                .title = row.title,
                .light = row.light,
                .dark = row.dark,
                .glyph = row.glyph,
                .extensions = row.extensions};
    }
};

/// A row for each kind, in the order of bars. Any two fills can be told apart with the usual forms of colour
/// blindness too, and every label is legible on its fill. An extension that stands with a FileKind as well
/// belongs to the kind that has no FileKind.
inline constexpr std::array contentTable{
    ContentRow::of(FileKind::video),
    ContentRow{.kind = ContentKind::picture,
               .title = "Pictures",
               .light = {.fill = 0xB0526E, .label = 0xFFFFFF},
               .dark = {.fill = 0xA25F9D, .label = 0xFFFFFF},
               .glyph = "M2 3h12v10H2zM2 11l3.5-3.5l3 3l2-2l3.5 3.5M10.5 5.8v.1",
               .extensions =
                   "jpg jpeg jpe jfif png apng gif bmp tif tiff webp avif heic heif jxl jp2 j2k jxr "
                   "svg svgz ico icns cur cr2 cr3 crw nef nrw arw srf sr2 dng orf rw2 raf pef srw "
                   "x3f 3fr iiq psd psb ai sketch fig xcf kra ora eps exr hdr tga dds ktx ktx2 pcx "
                   "pnm pbm pgm ppm xpm xbm afphoto afdesign"},
    ContentRow{.kind = ContentKind::music,
               .title = "Music",
               .light = {.fill = 0x774174, .label = 0xFFFFFF},
               .dark = {.fill = 0x581C6D, .label = 0xFFFFFF},
               .glyph =
                   "M6 12V3.5L13 2v8.5M6 12a2 2 0 1 1-4 0a2 2 0 0 1 4 0zM13 10.5a2 2 0 1 1-4 0a2 2 0 0 1 "
                   "4 0z",
               .extensions = "mp3 flac ogg oga opus m4a m4b m4p m4r aac ac3 eac3 dts wav wave w64 aif aiff "
                             "aifc caf wma alac ape wv mka mid midi amr mpc mp2 dsf dff tta spx s3m sf2 sf3"},
    ContentRow::of(FileKind::virtualMachine),
    ContentRow::of(FileKind::diskImage),
    ContentRow::of(FileKind::archive),
    ContentRow{.kind = ContentKind::package,
               .title = "Packages",
               .light = {.fill = 0x856D0A, .label = 0xFFFFFF},
               .dark = {.fill = 0xBF6B0F, .label = 0x0C1414},
               .glyph = "M8 2l5.5 3v6L8 14l-5.5-3V5zM2.5 5L8 8l5.5-3M8 8v6",
               .extensions =
                   "deb ddeb udeb rpm drpm appimage flatpak flatpakref snap jar war ear aar jmod whl "
                   "egg gem crate nupkg vsix xpi crx asar phar conda ipk xbps nar msi msix appx "
                   "appxbundle msixbundle aab"},
    ContentRow::of(FileKind::document),
    ContentRow::of(FileKind::application),
    ContentRow{
        .kind = ContentKind::sourceCode,
        .title = "Source code",
        .light = {.fill = 0x1680A5, .label = 0xFFFFFF},
        .dark = {.fill = 0x9BCF83, .label = 0x0C1414},
        .glyph = "M5.5 4L2 8l3.5 4M10.5 4L14 8l-3.5 4",
        .extensions =
            "c h cc cpp cxx c++ hh hpp hxx h++ ipp inl tcc m mm s asm cs csproj sln vb java kt kts "
            "scala groovy gradle clj cljs edn go rs zig nim swift dart py pyi pyx pxd ipynb rb erb pl "
            "pm php lua r rmd jl hs lhs ml mli fsx ex exs erl hrl elm sv vhdl js mjs cjs jsx ts tsx "
            "cts vue svelte astro html htm xhtml css scss sass less styl json json5 jsonc xml xsd xsl "
            "xslt dtd yaml yml toml ini cfg conf cmake mk mak bzl proto thrift graphql gql sh bash zsh "
            "fish ps1 bat cmd awk vim el lisp scm rkt tcl tex sty bib rst adoc po pot qml ui qrc glsl "
            "vert frag hlsl wgsl cu cuh f f90 f95 f03 pas ada adb ads cob nix tf hcl lock patch diff "
            "am ac m4 yy in"},
    ContentRow{.kind = ContentKind::buildOutput,
               .title = "Build output",
               .light = {.fill = 0x4459A9, .label = 0xFFFFFF},
               .dark = {.fill = 0x4E7BD0, .label = 0x0C1414},
               .glyph = "M10.5 8a2.5 2.5 0 1 1-5 0a2.5 2.5 0 0 1 5 0zM8 2v2M8 12v2M2 8h2M12 8h2M3.8 3.8l1.4 "
                        "1.4M10.8 10.8l1.4 1.4M3.8 12.2l1.4-1.4M10.8 5.2l1.4-1.4",
               .extensions = "o obj a lib so dylib dll ko la lo d rlib rmeta pyc pyo pyd class dex odex vdex "
                             "oat hi pdb gch pch ilk idb dwo dwp debug elc beam wasm mo qm qmlc jsc map "
                             "tsbuildinfo gcda gcno profraw profdata node spv stamp"},
    ContentRow{.kind = ContentKind::database,
               .title = "Databases",
               .light = {.fill = 0x933339, .label = 0xFFFFFF},
               .dark = {.fill = 0x7B1506, .label = 0xFFFFFF},
               .glyph = "M13 4a5 2 0 1 1-10 0a5 2 0 0 1 10 0zM3 4v8a5 2 0 0 0 10 0V4M3 8a5 2 0 0 0 10 0",
               .extensions = "sqlite sqlite3 sqlitedb sqlite-wal sqlite-shm db db3 db-wal db-shm db-journal "
                             "s3db sdb tdb mdb accdb odb dbf ldb sst ibd frm myd myi mdf ldf ndf rdb aof "
                             "realm kdbx fdb gdb nsf edb bson dump sql gpkg mbtiles duckdb lmdb mdbx parquet "
                             "arrow feather avro orc h5 hdf5 hdf npy npz rds rdata rda sav dta mat jsonl "
                             "ndjson tsv"},
    ContentRow{.kind = ContentKind::log,
               .title = "Logs",
               .light = {.fill = 0xF6F186, .label = 0x15211F},
               .dark = {.fill = 0xD6D2C4, .label = 0x0C1414},
               .glyph = "M3 3.5h10M3 6.5h7M3 9.5h10M3 12.5h5",
               .extensions = "log journal trace pcap pcapng etl evtx dmp crash hprof ips"},
    ContentRow::of(FileKind::folder),
    ContentRow::of(FileKind::other),
};

/// The rows by value. A kind with two rows, or with none in between, does not compile, and neither does a
/// FileKind without one.
inline constexpr auto contentRows = [] {
    std::array<const ContentRow*, contentTable.size()> rows{};
    for (const ContentRow& row : contentTable) {
        auto& place = rows.at(static_cast<std::size_t>(row.kind));
        ORBEL_CHECK(place == nullptr, "two rows of one kind");
        place = &row;
    }
    for (const FileKind kind : allFileKinds)
        ORBEL_CHECK(rows.at(static_cast<std::size_t>(kind))->glyph == rowOf(kind).glyph, "a kind of its own");
    return rows;
}();

constexpr const ContentRow& rowOf(ContentKind kind) {
    return *contentRows.at(static_cast<std::size_t>(kind));
}

constexpr std::string_view title(ContentKind kind) {
    return rowOf(kind).title;
}

/// By value.
inline constexpr auto allContentKinds = [] {
    std::array<ContentKind, contentRows.size()> kinds{};
    std::ranges::transform(contentRows, kinds.begin(), &ContentRow::kind);
    return kinds;
}();

/// In the order of bars.
inline constexpr auto shownContentKinds = [] {
    std::array<ContentKind, contentTable.size()> kinds{};
    std::ranges::transform(contentTable, kinds.begin(), &ContentRow::kind);
    return kinds;
}();

/// The kind of an entry of this name. A FileKind stands, but for `other` and for those documents
/// that are pictures.
ContentKind contentKind(std::string_view name, FileKind kind);

/// The same when its tellingExtension() is known.
ContentKind contentKindOf(FileKind kind, std::string_view extension);

/// The kind of an entry of which nothing is known but this.
ContentKind classifyContent(std::string_view name, bool isFolder = false, bool isPackage = false);

/// Of a node; a package has a kind, what lies in it is not looked at.
ContentKind contentKind(const FileTree& tree, NodeIndex node);

/// The extension that tells what a file is: what follows the last dot, or with a version or a date after it
/// ("libx.so.1.2", "app.log-20260114") what stands before those. A part of `name`, in its case; empty when
/// there is none, or what there is looks like a part of a longer version ("tool-1.0-stable").
std::string_view tellingExtension(std::string_view name);

} // namespace orbel

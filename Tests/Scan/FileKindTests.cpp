#include "Scan/FileKind.h"

#include <array>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <string_view>

namespace orbel {
namespace {

std::set<std::string> wordsOf(std::string_view text) {
    std::istringstream words{std::string(text)};
    return {std::istream_iterator<std::string>(words), {}};
}

TEST(FileKind, IsToldFromTheExtension) {
    EXPECT_EQ(classify("movie.MP4", false, false), FileKind::video);
    EXPECT_EQ(classify("backup.sparsebundle", true, true),
              FileKind::diskImage); // twelve characters, the most
    EXPECT_EQ(classify("a.tar.gz", false, false), FileKind::archive);
    EXPECT_EQ(classify("Thesis.PDF", false, false), FileKind::document);
    EXPECT_EQ(classify("Setup.exe", false, false), FileKind::application);
    EXPECT_EQ(classify("disk.qcow2", false, false), FileKind::virtualMachine);
    EXPECT_EQ(classify("notes.unknown", false, false), FileKind::other);
    EXPECT_EQ(classify("README", false, false), FileKind::other);
}

TEST(FileKind, HasNoExtensionWithoutTextAroundTheLastDot) {
    EXPECT_EQ(classify(".mp4", false, false), FileKind::other);
    EXPECT_EQ(classify("movie.", false, false), FileKind::other);
    EXPECT_EQ(pathExtension(".profile"), std::nullopt);
    EXPECT_EQ(pathExtension("plain"), std::nullopt);
    EXPECT_EQ(pathExtension("x.abcdefghijklm"), std::nullopt);
    EXPECT_EQ(pathExtension("x.abcdefghijkl"), "abcdefghijkl");
    EXPECT_EQ(pathExtension("x.ÄÄÄÄÄÄÄÄÄÄÄÄ"), "ÄÄÄÄÄÄÄÄÄÄÄÄ") << "characters count, not bytes";
    EXPECT_EQ(pathExtension("A.B.TXT"), "txt");
}

TEST(FileKind, OfFoldersAndPackages) {
    EXPECT_EQ(classify("movie.mp4", true, false), FileKind::folder);
    EXPECT_EQ(classify("Tool.app", true, true), FileKind::application);
    EXPECT_EQ(classify("Photos Library.photoslibrary", true, true), FileKind::folder);
    EXPECT_EQ(classify("Docker.raw", true, false), FileKind::virtualMachine);
    EXPECT_TRUE(isPackage("Photos Library.photoslibrary"));
    EXPECT_TRUE(isPackage("Old.iMovieLibrary"));
    EXPECT_TRUE(isPackage("X.APP"));
    EXPECT_FALSE(isPackage("movie.mp4"));
    EXPECT_FALSE(isPackage(".app"));
}

// What a saved report calls a video must not become something else with the next version.
TEST(FileKind, ListsTheseExtensionsAndNoOthers) {
    struct Kind {
        FileKind kind;
        std::string_view extensions;
    };
    static constexpr std::array kinds{
        Kind{FileKind::video, "mp4 mov m4v mkv avi wmv flv webm mpg mpeg mts m2ts 3gp braw r3d mxf insv lrv"},
        Kind{FileKind::diskImage, "dmg iso img sparseimage sparsebundle toast cdr"},
        Kind{FileKind::archive, "zip tar gz tgz bz2 xz 7z rar zst lz4 xip pkg mpkg"},
        Kind{FileKind::document,
             "pdf doc docx xls xlsx ppt pptx pages numbers key txt rtf rtfd md csv epub psd ai sketch fig"},
        Kind{FileKind::application, "app ipa apk exe appex"},
        Kind{FileKind::virtualMachine, "vmdk qcow2 utm vdi vhd vhdx pvm vmwarevm hdd"},
    };
    std::set<std::string> withKind;
    for (const auto& [kind, extensions] : kinds)
        for (const auto& extension : wordsOf(extensions)) {
            EXPECT_EQ(kindByExtension(extension), kind) << extension;
            withKind.insert(extension);
        }
    std::set<std::string> listed;
    for (const KindRow& row : kindTable)
        listed.merge(wordsOf(row.extensions));
    EXPECT_EQ(listed, withKind);

    const auto packages = wordsOf(
        "app appex framework bundle plugin kext xpc photoslibrary photolibrary musiclibrary tvlibrary "
        "imovielibrary fcpbundle logicx band rtfd pages numbers key sparsebundle utm pvm vmwarevm xcarchive "
        "xcodeproj xcworkspace playground docset mlmodelc scptd wdgt pkg mpkg");
    listed.insert(packages.begin(), packages.end());
    for (const auto& extension : listed)
        EXPECT_EQ(isPackage("x." + extension), packages.contains(extension)) << extension;
}

/// Whether the enumeration has a case of this value: the compiler calls it by its name then, else
/// by its number.
template <FileKind kind>
constexpr bool isCase() {
    return !std::string_view(__PRETTY_FUNCTION__).contains("FileKind)");
}

TEST(FileKind, HasARowForEveryCase) {
    static_assert(isCase<FileKind::other>());
    constexpr auto next = static_cast<FileKind>(kindTable.size());
    EXPECT_FALSE(isCase<next>()) << "a case without a row";
    EXPECT_EQ(fileKindFromRawValue(1), FileKind::video);
    EXPECT_EQ(fileKindFromRawValue(static_cast<std::uint8_t>(next)), FileKind::other);
    EXPECT_EQ(fileKindFromRawValue(255), FileKind::other);
}

// Raw values and names are in files that other versions wrote; the colours were chosen together, so that any
// two stay apart for the colour-blind.
TEST(FileKind, KeepsItsRawValueNameAndColours) {
    struct Kind {
        std::string_view name;
        std::string_view title;
        Rgb fill;
        Rgb label;
        Rgb darkFill;
        Rgb darkLabel;
    };
    static constexpr Kind kinds[]{
        {"folder", "Folders", 0x8D9493, 0x15211F, 0x5C6968, 0xFFFFFF},
        {"video", "Video", 0xD5B4F9, 0x15211F, 0xA18FD3, 0x0C1414},
        {"diskImage", "Disk images", 0x779BD9, 0x15211F, 0x245883, 0xFFFFFF},
        {"archive", "Archives", 0xCDAE54, 0x15211F, 0xBD9D54, 0x0C1414},
        {"document", "Documents", 0xB6EAF4, 0x15211F, 0x7FACA5, 0x0C1414},
        {"application", "Apps", 0xABD6A6, 0x15211F, 0x789175, 0x0C1414},
        {"virtualMachine", "Virtual machines", 0xCA7C4E, 0x15211F, 0x944821, 0xFFFFFF},
        {"other", "Other", 0xAAB1B2, 0x15211F, 0x404645, 0xFFFFFF},
    };
    ASSERT_EQ(allFileKinds.size(), std::size(kinds));
    std::set<std::string_view> glyphs;
    for (std::size_t raw = 0; raw < std::size(kinds); ++raw) {
        const auto& kind = kinds[raw];
        SCOPED_TRACE(kind.name);
        const auto& row = rowOf(allFileKinds[raw]);
        EXPECT_EQ(rawValue(row.kind), kind.name);
        EXPECT_EQ(title(row.kind), kind.title);
        EXPECT_EQ(row.light.fill, kind.fill);
        EXPECT_EQ(row.light.label, kind.label);
        EXPECT_EQ(row.dark.fill, kind.darkFill);
        EXPECT_EQ(row.dark.label, kind.darkLabel);
        EXPECT_TRUE(row.glyph.starts_with('M') && glyphs.insert(row.glyph).second) << "one of its own";
    }
}

} // namespace
} // namespace orbel

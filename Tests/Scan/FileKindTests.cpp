#include "Scan/FileKind.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

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

TEST(FileKind, ReadsUnknownRawValuesAsOther) {
    EXPECT_EQ(fileKindFromRawValue(1), FileKind::video);
    EXPECT_EQ(fileKindFromRawValue(8), FileKind::other);
    EXPECT_EQ(fileKindFromRawValue(255), FileKind::other);
}

} // namespace
} // namespace orbel

#include "Scan/EmptyFolderMask.h"
#include "Scan/TreeScanner.h"
#include "Support/TemporaryFolder.h"
#include "Support/TreeBuilder.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace orbel {
namespace {

using test::blocksOf;
using test::TemporaryFolder;
using test::TreeBuilder;

TEST(TreeScanner, MeasuresOneItem) {
    const TemporaryFolder home;
    const auto file = home.file("folder/file", 20'000);
    home.hardLink("folder/link", "folder/file");
    const auto link = home.link("shortcut", home.path("folder"));
    using Measurement = TreeScanner::Measurement;

    EXPECT_EQ(TreeScanner::measure(file), (Measurement{.bytes = blocksOf(file)}));
    EXPECT_EQ(TreeScanner::measure(home.path("folder")), (Measurement{.bytes = blocksOf(file)}))
        << "two links to one file count once";
    EXPECT_EQ(TreeScanner::measure(link), (Measurement{.bytes = blocksOf(link)}));
    EXPECT_EQ(TreeScanner::measure(home.path("missing")), (Measurement{.unreadable = 1}));
    EXPECT_EQ(TreeScanner::measure(home.folder("empty/inner")), (Measurement{.isEmptyFolder = true}));
    EXPECT_TRUE(TreeScanner::measure(home.path("empty")).isEmptyFolder);
}

TEST(TreeScanner, FindsProtectedDataInsideAnItem) {
    const TemporaryFolder home;
    home.file("deep/er/login.keychain-db", 100);
    home.file("Old.photoslibrary/x", 100);
    const auto keychain = home.file("system.keychain", 100);
    EXPECT_EQ(TreeScanner::measure(home.path("deep")).protectedInside,
              home.path("deep/er/login.keychain-db"));
    EXPECT_EQ(TreeScanner::measure(home.path("Old.photoslibrary")).protectedInside,
              home.path("Old.photoslibrary"));
    EXPECT_EQ(TreeScanner::measure(keychain).protectedInside, keychain);
    EXPECT_EQ(TreeScanner::measure(home.file("other", 100)).protectedInside, std::nullopt);
}

TEST(TreeScanner, ScansInTheBackground) {
    const TemporaryFolder home;
    home.file("a/file", 10'000);
    const auto token = std::make_shared<ScanCancellation>();
    std::atomic<bool> reportedElsewhere = false;
    const auto here = std::this_thread::get_id();
    auto scan = TreeScanner::scanInBackground(home.path(), 2, token, [&](const ScanProgress& progress) {
        reportedElsewhere = progress.entries == 2 && std::this_thread::get_id() != here;
    });
    const ScanResult result = scan.get();
    EXPECT_EQ(result.tree.count(), 3);
    EXPECT_FALSE(result.cancelled);
    EXPECT_TRUE(result.firstProgress);
    EXPECT_GE(result.duration, *result.firstProgress);
    EXPECT_TRUE(reportedElsewhere);

    token->cancel();
    const ScanResult stopped = TreeScanner::scanInBackground(home.path(), 2, token, nullptr).get();
    EXPECT_TRUE(stopped.cancelled);
    EXPECT_EQ(stopped.firstProgress, std::nullopt);
}

TEST(TreeScanner, OfAnEmptyFolderHasNoFirstProgress) {
    const TemporaryFolder home;
    const ScanCancellation nobodyCancels;
    const ScanResult result = TreeScanner::scan(home.path(), std::nullopt, nobodyCancels, nullptr);
    EXPECT_EQ(result.tree.count(), 1);
    EXPECT_EQ(result.firstProgress, std::nullopt);
}

TEST(EmptyFolderMask, TakesOnlyWhatCertainlyHoldsNothing) {
    TreeBuilder builder;
    const auto holder = builder.folder(0, "holder");
    const auto inner = builder.folder(holder, "inner");
    builder.file(inner, ".DS_Store", 6000);
    const auto withFolderNamedSo = builder.folder(0, "withFolderNamedSo");
    const auto storeFolder = builder.folder(withFolderNamedSo, ".DS_Store");

    const auto withFile = builder.folder(0, "withFile");
    builder.file(builder.folder(withFile, "down"), "zero", 0);
    const auto withLink = builder.folder(0, "withLink");
    builder.file(withLink, ".DS_Store", 0, NodeFlags::symlink);
    const auto withClosed = builder.folder(0, "withClosed");
    const auto closed = builder.folder(withClosed, "closed", NodeFlags::unreadable);
    const auto withVolume = builder.folder(0, "withVolume");
    builder.folder(withVolume, "disk", NodeFlags::otherVolume);
    const auto withCloud = builder.folder(0, "withCloud");
    builder.file(withCloud, ".DS_Store", 0, NodeFlags::dataless);
    const auto withUnlisted = builder.folder(0, "withUnlisted");
    builder.tree.unlistedEntries[withUnlisted] = 1;

    const auto mask = emptyFolderMask(builder.build());
    for (const auto node : {holder, inner, withFolderNamedSo, storeFolder})
        EXPECT_TRUE(mask[node]) << node;
    for (const auto node :
         {NodeIndex{0}, withFile, withLink, withClosed, closed, withVolume, withCloud, withUnlisted})
        EXPECT_FALSE(mask[node]) << node;
}

} // namespace
} // namespace orbel

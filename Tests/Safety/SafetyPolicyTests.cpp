#include "Safety/FullDiskAccess.h"
#include "Safety/SafetyPolicy.h"
#include "Support/Policies.h"
#include "Support/TemporaryFolder.h"
#include "Util/FileDescriptor.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>

namespace orbel {
namespace {

using enum AllowedRoot;
constexpr auto libraryRefusal = "Inside Library: only Caches and Logs can be moved from here";

/// A home and the policy that macOS has for it: the rules that hold on every platform, in their own words.
class SafetyPolicyTest : public ::testing::Test {
protected:
    static SafetyPolicy policyFor(const test::TemporaryFolder& home) {
        auto options = test::macOSOptions();
        options.applicationFolders = {home.path("Programs")};
        return {home.path(), std::move(options)};
    }

    std::string refusal(const std::string& path, AllowedRoot root = homeItem,
                        const std::optional<FileStamp>& expected = std::nullopt) const {
        return policyFor(home).check(path, root, expected).refusal().value_or("allowed");
    }
    std::string refusalOf(std::string_view relative, AllowedRoot root = homeItem) const {
        return refusal(home.path(relative), root);
    }
    std::string application(std::string_view relative) const {
        home.file(std::string(relative) + "/Contents/Info.plist");
        return home.path(relative);
    }

    test::TemporaryFolder home;
};

TEST_F(SafetyPolicyTest, AllowsWithTheRealPathAndTheStampOfThisCheck) {
    const auto file = home.file("Documents/a/file", 5);
    home.link("Documents/way", home.path("Documents/a"));
    const auto decision =
        policyFor(home).check(home.path("Documents/way/../a/file"), homeItem, FileStamp::of(file));
    ASSERT_TRUE(decision.isAllowed()) << *decision.refusal();
    EXPECT_EQ(decision, SafetyDecision::allowed(file, FileStamp::of(file).value()));
}

TEST_F(SafetyPolicyTest, RefusesWhatIsGoneALinkOrUnresolvable) {
    home.folder("Documents/folder");
    home.link("Documents/link", home.path("Documents/folder"));
    EXPECT_EQ(refusalOf("Documents/missing"), "Already gone");
    EXPECT_EQ(refusal(""), "Already gone");
    const auto linkRefusal = "Is a symbolic link; links are never followed for deletion";
    for (const auto* form : {"Documents/link", "Documents/link/", "Documents/link//", "Documents/link/./"})
        EXPECT_EQ(refusalOf(form), linkRefusal) << form;
    EXPECT_EQ(refusal(home.file("Documents/file") + std::string("\0x", 2)),
              "Could not resolve the real path");
}

TEST_F(SafetyPolicyTest, RefusesWhatChangedSinceTheScan) {
    const auto file = home.file("Documents/file", 5);
    auto stamp = FileStamp::of(file).value();
    EXPECT_EQ(refusal(file, homeItem, stamp), "allowed");
    stamp.size = 6;
    EXPECT_EQ(refusal(file, homeItem, stamp), "Changed since the scan — scan again");
    stamp.identity.device += 1;
    EXPECT_EQ(refusal(file, homeItem, stamp), "Changed since the scan — scan again")
        << "before the volume is looked at";
}

TEST_F(SafetyPolicyTest, RefusesAnotherVolumeTheRootAndTheHome) {
    EXPECT_EQ(refusal("/dev"), "On another volume");
    EXPECT_EQ(SafetyPolicy(home.path("no home"), test::macOSOptions()).check("/", homeItem, {}).refusal(),
              "Refusing to delete the root or home folder");
    for (const auto* form : {"", "/", "/.", "/Documents/.."}) {
        home.folder("Documents");
        EXPECT_EQ(refusal(home.path() + form), "Refusing to delete the root or home folder") << form;
    }
}

TEST_F(SafetyPolicyTest, KnowsTheHomeByItsDataVolumeName) {
    auto options = test::macOSOptions();
    // As if the temporary folder were a data volume: what it resolves to has another visible name.
    const auto visible = home.folder("visible");
    const SafetyPolicy policy(home.folder("visible/ann"), options);
    EXPECT_EQ(policy.homePath(), visible + "/ann");
    options.canonicalizer = PathCanonicalizer("/Users\tUsers\n");
    EXPECT_EQ(SafetyPolicy("/System/Volumes/Data/Users/ann/", options).homePath(), "/Users/ann");
}

TEST_F(SafetyPolicyTest, RefusesEverySystemRoot) {
    const auto policy = policyFor(home);
    for (const auto root : NeverTouch::defaultSystemRoots) {
        const std::string path(root);
        EXPECT_EQ(policy.protectionReason(path, {}), "Protected: system location " + path);
        EXPECT_EQ(policy.protectionReason(path + "/x/y", {}), "Protected: system location " + path);
        EXPECT_EQ(policy.protectionReason(path + "x", {}), std::nullopt);
    }
    EXPECT_EQ(policy.systemRoots().size(), 9u);
}

TEST_F(SafetyPolicyTest, RefusesEveryNeverTouchFolderWhatIsInItAndWhatHoldsIt) {
    const auto policy = policyFor(home);
    ASSERT_EQ(policy.neverTouchRoots().size(), 23u);
    for (const auto& root : policy.neverTouchRoots()) {
        const auto shown = "~" + root.substr(home.path().size());
        EXPECT_EQ(policy.protectionReason(root, {}), "Protected: " + shown);
        EXPECT_EQ(policy.protectionReason(root + "/a/b", {}), "Protected: " + shown);
    }
    EXPECT_EQ(policy.protectionReason(home.path("Library/Application Support/MobileSync"), {}),
              "Contains protected data: ~/Library/Application Support/MobileSync/Backup");
    EXPECT_EQ(policy.protectionReason(home.path(), {}), "Contains protected data: ~/.claude/projects");
    home.folder("Library/Application Support/MobileSync");
    EXPECT_EQ(refusalOf("Library/Application Support/MobileSync", leftover),
              "Contains protected data: ~/Library/Application Support/MobileSync/Backup");
}

TEST_F(SafetyPolicyTest, FollowsAProtectedFolderToItsRealPlace) {
    home.folder("Data/photos/2024");
    home.link("Pictures", home.path("Data/photos"));
    EXPECT_EQ(refusalOf("Data/photos/2024"), "Protected: ~/Data/photos");
    EXPECT_EQ(refusalOf("Pictures/2024"), "Protected: ~/Data/photos");
    home.folder("Data/deep/photos");
    EXPECT_EQ(refusalOf("Data/deep"), "allowed");
}

TEST_F(SafetyPolicyTest, KnowsProtectedObjectsByIdentityUnderAnyName) {
    home.folder(".ssh/keys");
    home.folder("Documents/other");
    const auto policy = policyFor(home);
    const auto identity = [&](std::string_view relative) { return FileIdentity::of(home.path(relative)); };
    const auto elsewhere = home.path("Documents/other/name");
    EXPECT_EQ(policy.protectionReason(elsewhere, identity(".ssh")), "Protected: ~/.ssh");
    home.folder("Library/Application Support/MobileSync/Backup");
    EXPECT_EQ(policyFor(home).protectionReason(elsewhere, identity("Library/Application Support")),
              "Contains protected data: ~/Library/Application Support/MobileSync/Backup")
        << "the first root of the list that lies in it";
    EXPECT_EQ(policyFor(home).protectionReason(elsewhere, identity("Library")),
              "Contains protected data: ~/Library/Keychains");

    // The folder itself now has another name; the policy was built before.
    std::filesystem::rename(home.path(".ssh"), home.path("Documents/renamed"));
    EXPECT_EQ(policy.check(home.path("Documents/renamed/keys"), homeItem, {}).refusal(), "Protected: ~/.ssh");
}

TEST_F(SafetyPolicyTest, RefusesLibrariesBackupsAndAppleDataByName) {
    const auto policy = policyFor(home);
    for (const auto* name : {"Family.photoslibrary", "Mac.backupbundle/x", "Backups.backupdb",
                             "login.keychain-db", "old/my.keychain", "My Backups.backupdb/2024"})
        EXPECT_EQ(policy.protectionReason(home.path("Documents/" + std::string(name)), {}),
                  "Protected library or backup");
    EXPECT_EQ(policy.protectionReason(home.path("Documents/photoslibrary.txt"), {}), std::nullopt);

    for (const auto* owned :
         {"Library/Containers/com.apple.Notes/Data", "Library/Containers/com.apple.Notes",
          "Library/Group Containers/group.com.apple.notes", "Library/Application Support/com.apple.x"})
        EXPECT_EQ(policy.protectionReason(home.path(owned), {}), "Protected: Apple app data") << owned;
    for (const auto* other :
         {"Library/Containers/org.example.App", "Library/Caches/com.apple.x",
          "Library/Containers/org.example.App/com.apple.x", "Library/Containers/com.applesauce"})
        EXPECT_EQ(policy.protectionReason(home.path(other), {}), std::nullopt) << other;
}

TEST_F(SafetyPolicyTest, RefusesWhatTheSystemGuards) {
    const auto file = home.file("Documents/guarded");
    if (std::system(("chattr +i '" + file + "' 2>/dev/null").c_str()) != 0)
        GTEST_SKIP()
            << "NOT TESTED: cannot make a file immutable here (needs root and a file system that can)";
    EXPECT_EQ(refusal(file), "Protected by macOS");
    EXPECT_EQ(SafetyPolicy(home.path(), test::linuxOptions()).check(file, homeItem, {}).refusal(),
              "Protected by the system");
    EXPECT_EQ(std::system(("chattr -i '" + file + "'").c_str()), 0);
}

TEST_F(SafetyPolicyTest, HomeItemsMayLieAnywhereTwoLevelsDeepButInLibrary) {
    for (const auto* allowed :
         {"Documents/x", "Documents/x/y", "Library/Caches/x", "Library/Logs/x/y", "Librarian/x"}) {
        home.folder(allowed);
        EXPECT_EQ(refusalOf(allowed), "allowed") << allowed;
    }
    EXPECT_EQ(refusalOf("Documents"), "Too close to the home folder");
    EXPECT_EQ(refusal(home.file("file in home")), "Too close to the home folder");
    for (const auto* kept : {"Library/Caches", "Library/Logs", "Library/Preferences/x", "Library/CachesX/y",
                             "Library/Application Support/org.example"}) {
        home.folder(kept);
        EXPECT_EQ(refusalOf(kept), libraryRefusal) << kept;
    }
    const test::TemporaryFolder outside;
    EXPECT_EQ(refusal(outside.file("a/b")), "Outside the home folder");
    EXPECT_EQ(policyFor(home).rootReason(home.path() + "x/a/b", homeItem, false), "Outside the home folder");
}

TEST_F(SafetyPolicyTest, ApplicationsMustBeWholeBundlesInTheirPlace) {
    EXPECT_EQ(refusal(application("Programs/X.app"), applicationBundle), "allowed");
    EXPECT_EQ(refusal(application("Programs/Utilities/X.app"), applicationBundle), "allowed");
    EXPECT_EQ(refusal(application("Programs/Y.app/Z.app"), applicationBundle),
              "Not in an Applications folder");
    EXPECT_EQ(refusal(application("Programs/Y.app/Contents/Z.app"), applicationBundle),
              "Not in an Applications folder");
    EXPECT_EQ(refusal(application("Programs/a/b/X.app"), applicationBundle), "Not in an Applications folder");
    EXPECT_EQ(refusal(application("Programs/X.tool"), applicationBundle), "Not an application bundle");
    EXPECT_EQ(refusal(home.file("Programs/File.app"), applicationBundle), "Not an application bundle");
    home.folder("Programs/Web.app/Wrapper");
    EXPECT_EQ(refusalOf("Programs/Web.app", applicationBundle), "Not a Mac app (remove it in Finder)");

    for (const auto* locked : {"Programs/X.app", "Programs"}) {
        auto options = test::macOSOptions();
        options.applicationFolders = {home.path("Programs")};
        options.isWritable = [&](const std::string& path) { return path != home.path(locked); };
        EXPECT_EQ(SafetyPolicy(home.path(), options)
                      .check(home.path("Programs/X.app"), applicationBundle, {})
                      .refusal(),
                  "Needs admin: remove it in Finder");
    }
}

TEST_F(SafetyPolicyTest, LeftoversLieDirectlyInALeftoverFolder) {
    const auto policy = policyFor(home);
    for (const auto folder : SafetyPolicy::leftoverFolders) {
        const auto path = home.path("Library/" + std::string(folder));
        EXPECT_EQ(policy.rootReason(path + "/org.example.App", leftover, true), std::nullopt) << path;
        EXPECT_TRUE(policy.isLeftoverPlace(path + "/org.example.App"));
    }
    for (const auto* other :
         {"Library/x", "Library/Caches/org.example/x", "Documents/x", "Library/Preferences/Other/x"})
        EXPECT_EQ(policy.rootReason(home.path(other), leftover, true), "Not in a leftover folder") << other;
}

TEST_F(SafetyPolicyTest, SaysWhyAnItemMayNotBePutBack) {
    home.folder("Documents/a");
    home.folder("Library/Caches");
    home.folder("Library/Preferences");
    home.folder(".ssh");
    home.folder("Programs/Y.app");
    home.link("Documents/shortcut", home.path(".ssh"));
    const auto policy = policyFor(home);
    const auto reason = [&](std::string_view relative, AllowedRoot root = homeItem) {
        return policy.restoreDestinationReason(home.path(relative), root).value_or("allowed");
    };
    EXPECT_EQ(reason("Documents/a/file"), "allowed");
    EXPECT_EQ(reason("Library/Caches/x"), "allowed");
    EXPECT_EQ(reason("Library/Preferences/x", leftover), "allowed");
    EXPECT_EQ(reason("Programs/X.app", applicationBundle), "allowed") << "nothing is there yet to look at";

    const auto gone = "The original folder no longer exists or moved";
    for (const auto* path : {"Documents/gone/file", "Documents/a/..", "Documents/a/."})
        EXPECT_EQ(reason(path), gone) << path;
    EXPECT_EQ(policy.restoreDestinationReason("/", homeItem), gone);
    EXPECT_EQ(policy.restoreDestinationReason(home.path("Documents/a/") + std::string("x\0y", 3), homeItem),
              gone);
    EXPECT_EQ(reason(".ssh/key"), "Cannot restore to a protected location (Protected: ~/.ssh)");
    EXPECT_EQ(reason("Documents/shortcut/key"), "Cannot restore to a protected location (Protected: ~/.ssh)");
    EXPECT_EQ(reason("file"), "Cannot restore there: Too close to the home folder");
    EXPECT_EQ(reason("Library/Preferences/x"), "Cannot restore there: " + std::string(libraryRefusal));
    EXPECT_EQ(reason("Documents/x", leftover), "Cannot restore there: Not in a leftover folder");
    for (const auto* path : {"Documents/X.app", "Programs/X.tool", "Programs/Y.app/Z.app"})
        EXPECT_EQ(reason(path, applicationBundle), "Cannot restore there: not an Applications folder")
            << path;
}

TEST_F(SafetyPolicyTest, WithoutAHomeNothingIsComparedWithItsVolume) {
    const test::TemporaryFolder other;
    const SafetyPolicy policy(other.path("gone//home/."), test::macOSOptions());
    EXPECT_EQ(policy.homePath(), other.path("gone/home"));
    EXPECT_EQ(policy.check(other.file("a/b"), homeItem, {}).refusal(), "Outside the home folder");
}

TEST(AllowedRoot, IsStoredUnderItsName) {
    for (const auto* name : {"homeItem", "applicationBundle", "leftover"})
        EXPECT_EQ(rawValue(fromRawValue<AllowedRoot>(name).value()), name);
    EXPECT_EQ(fromRawValue<AllowedRoot>("HomeItem"), std::nullopt);
}

TEST(FullDiskAccess, IsWhatTheProbesSayAndUnknownWithoutOne) {
    const test::TemporaryFolder home;
    EXPECT_EQ(FullDiskAccess::isGranted(home.path()), std::nullopt);
    home.folder("Library/Safari");
    EXPECT_EQ(FullDiskAccess::isGranted(home.path()), true);

    // What exists and cannot be opened, by root neither: a socket.
    const auto database = home.folder("Library/Application Support/com.apple.TCC") + "/TCC.db";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(database.size(), sizeof(address.sun_path));
    std::ranges::copy(database, address.sun_path);
    const FileDescriptor listener(::socket(AF_UNIX, SOCK_STREAM, 0));
    ASSERT_EQ(::bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    EXPECT_EQ(FullDiskAccess::isGranted(home.path()), false) << "the database decides before the folder";
    std::filesystem::remove(database);
    home.file("Library/Application Support/com.apple.TCC/TCC.db");
    EXPECT_EQ(FullDiskAccess::isGranted(home.path()), true);

    const test::TemporaryFolder unlistable;
    unlistable.file("Library/Safari");
    EXPECT_EQ(FullDiskAccess::isGranted(unlistable.path()), false);
}

} // namespace
} // namespace orbel

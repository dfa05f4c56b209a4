#include "Delete/DeletionItem.h"
#include "Safety/ProtectedContent.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/TreeScanner.h"
#include "Support/Policies.h"
#include "Support/TemporaryFolder.h"
#include "Util/PathText.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

class ProtectedContentTest : public ::testing::Test {
protected:
    std::string refusalOf(const std::string& relative) const {
        return policy.check(home.path(relative), AllowedRoot::homeItem, {}).refusal().value_or("allowed");
    }
    /// Why the lists would not let it be ticked.
    std::string blockOf(const std::string& relative) const {
        const ScanCancellation nobodyCancels;
        const auto tree = TreeScanner::scan(home.path(), 1, nobodyCancels, nullptr).tree;
        const auto node = tree.index(home.path(relative), PathCanonicalizer::shared()).value();
        return DeletionItem::fromTree(tree, node, DeletionModule::map, policy)
            .value()
            .blockedReason.value_or("allowed");
    }
    /// What the measuring right before a move finds, below the home.
    std::string foundIn(const std::string& relative) const {
        const auto found = TreeScanner::measure(home.path(relative)).protectedInside;
        return found ? found->substr(home.path().size() + 1) : "nothing";
    }

    test::TemporaryFolder home;
    SafetyPolicy policy{home.path(), test::linuxOptions()};
};

TEST_F(ProtectedContentTest, WhatIsCalledLikeAKeyIsProtectedWithAllThatHoldsIt) {
    for (const auto* name :
         {"key4.db", "key3.db", "logins.json", "Login Data", "all.kdbx", "old.kdb", "wallet.dat",
          "secring.gpg", "private-keys-v1.d/x", "id_rsa", "id_ecdsa", "id_ed25519", "putty.ppk", "a.keystore",
          "b.jks", "credentials.tfrc.json", "digikam4.db", "duplicity-full.2020.vol1.difftar.gpg",
          "duplicity-inc.2020.to.2021.manifest"}) {
        const auto folder = "work/" + std::to_string(std::hash<std::string>()(name));
        const auto path = folder + "/deep/" + name;
        home.file(path);
        EXPECT_TRUE(refusalOf(path).starts_with("Protected: ")) << name << ": " << refusalOf(path);
        EXPECT_TRUE(blockOf(folder).starts_with("Contains protected data: ~/" + folder)) << name;
        EXPECT_TRUE(foundIn(folder).starts_with(folder + "/deep/")) << name;
    }
    for (const auto* name : {"id_rsa.pub", "mykey4.db", "kdbx", "login data", "credentials.json", "x.jksx"}) {
        home.file(std::string("plain/") + name);
        EXPECT_EQ(refusalOf(std::string("plain/") + name), "allowed") << name;
    }
    EXPECT_EQ(foundIn("plain"), "nothing");
    EXPECT_EQ(refusalOf("work"), "Too close to the home folder");
    home.file("mine/keys/id_rsa");
    EXPECT_EQ(refusalOf("mine/keys/id_rsa"), "Protected: a private key");
    EXPECT_EQ(blockOf("mine/keys/id_rsa"), "Protected: a private key");
    EXPECT_EQ(blockOf("mine/keys"), "Contains protected data: ~/mine/keys/id_rsa");
}

TEST_F(ProtectedContentTest, InBuildOutputAndPackageCachesSuchNamesAreTestData) {
    for (const auto* folder :
         {"p/node_modules", "p/target", "p/lib/site-packages", "go/pkg/mod", ".cargo/registry"}) {
        const auto path = std::string(folder) + "/some/test/id_rsa";
        home.file(path);
        EXPECT_EQ(foundIn(folder), "nothing") << folder;
        EXPECT_EQ(blockOf(std::string(folder) + "/some"), "allowed") << folder;
        EXPECT_EQ(refusalOf(path), "allowed") << folder;
    }
    home.file("p/node_modules/x/Family.photoslibrary/x");
    EXPECT_NE(foundIn("p/node_modules"), "nothing") << "a library is one anywhere";
    home.file("mod/pkg/go/id_rsa");
    EXPECT_NE(foundIn("mod/pkg"), "nothing");
}

TEST_F(ProtectedContentTest, AFolderIsProtectedByTheShapeOfWhatItHolds) {
    const std::map<std::string, std::vector<std::string>> shapes{
        {"borg", {"README", "config", "data/0/17", "index.17"}},
        {"restic", {"config", "data/00/x", "index/x", "keys/x", "snapshots/x"}},
        {"etc/.snapshots/7", {"info.xml", "snapshot/x"}},
        {"timeshift/snapshots/2024", {"info.json", "localhost/x"}},
        {"lists/Maildir of me", {"cur/1", "new/2", "tmp/x"}},
        {"games/prefix", {"system.reg", "dosdevices/c"}},
        {"games/steamapps", {"appmanifest_220.acf", "common/Game/x"}},
    };
    for (const auto& [folder, files] : shapes) {
        const auto path = "work/" + folder;
        for (const auto& file : files)
            home.file(joinedPath(path, file), 10);
        const auto part = joinedPath(path, parentPath(files.back()).empty() ? files[2] : files.back());
        EXPECT_TRUE(refusalOf(path).starts_with("Protected: ")) << folder << ": " << refusalOf(path);
        EXPECT_TRUE(refusalOf(part).starts_with("Protected: part of ")) << part << ": " << refusalOf(part);
        EXPECT_TRUE(blockOf(path) != "allowed") << folder;
        EXPECT_EQ(foundIn(path), path);
    }
    EXPECT_EQ(foundIn("work/lists"), "work/lists/Maildir of me") << "at any depth";
    EXPECT_EQ(blockOf("work/lists"), "Contains protected data: ~/work/lists/Maildir of me");

    for (const auto* file :
         {"project/README", "project/config", "project/data/x", "site/index/x", "site/data/x", "half/cur/x",
          "half/new/x", "plain/snapshots/x/info.txt", "repo/HEAD", "repo/refs/x", "repo/objects/x",
          "source/common/x", "source/main.c"})
        home.file(std::string("other/") + file);
    for (const auto* folder : {"project", "site", "half", "plain", "repo", "source"})
        EXPECT_EQ(blockOf(std::string("other/") + folder), "allowed") << folder;
}

TEST_F(ProtectedContentTest, WhatLeftSuchAPlaceBeforeMayReturn) {
    home.folder("mail/cur");
    home.folder("mail/new");
    home.folder("mail/tmp");
    EXPECT_EQ(policy.restoreDestinationReason(home.path("mail/cur/1"), AllowedRoot::homeItem), std::nullopt);
    home.folder("keys/old");
    EXPECT_EQ(policy.restoreDestinationReason(home.path("keys/old/id_rsa"), AllowedRoot::homeItem),
              std::nullopt);
}

} // namespace
} // namespace orbel

#include "Platform/FileStatus.h"
#include "Platform/Linux/Portable/LinuxSystemPlaces.h"
#include "Scan/TreeScanner.h"
#include "Support/TemporaryFolder.h"
#include "Util/FileDescriptor.h"

#include <algorithm>
#include <gtest/gtest.h>

#include <fcntl.h>

namespace orbel::platform {
namespace {

/// A system in a scratch folder.
class LinuxSystemPlacesTest : public ::testing::Test {
protected:
    std::vector<SystemPlace> places() {
        return linuxSystemPlaces({.root = system.path(),
                                  .home = system.path("home/ann"),
                                  .resolver = PathResolver({system.path("var/lib/docker/remote")}),
                                  .run =
                                      [this](const std::vector<std::string>& words) {
                                          asked.push_back(words);
                                          return answer;
                                      },
                                  .measure =
                                      [this](const std::string& path) {
                                          const auto measured = TreeScanner::measure(path, 1);
                                          return FolderSize{.bytes = measured.bytes,
                                                            .isComplete = path != unreadable};
                                      }});
    }
    /// The only place at this path, and none when it is not listed.
    SystemPlace at(std::string_view path) {
        const auto all = places();
        EXPECT_LE(std::ranges::count(all, path, &SystemPlace::path), 1) << path;
        const auto found = std::ranges::find(all, path, &SystemPlace::path);
        return found == all.end() ? SystemPlace() : *found;
    }
    std::uint64_t blocks(std::string_view path) const { return test::blocksOf(system.path(path)); }
    void flatpak(std::string_view place, std::string_view metadata) const {
        const auto folder = std::string(place) + "/active/";
        system.file(folder + "metadata", metadata);
        system.file(folder + "files/data", 5000);
    }

    test::TemporaryFolder system;
    std::optional<std::string> answer;
    std::vector<std::vector<std::string>> asked;
    std::string unreadable;
};

TEST_F(LinuxSystemPlacesTest, AnEmptySystemHasNoneAndIsNotAsked) {
    EXPECT_EQ(places(), std::vector<SystemPlace>());
    EXPECT_EQ(asked.size(), 0U);
}

TEST_F(LinuxSystemPlacesTest, OfPackagesOnlyWhatTheCommandRemovesCounts) {
    system.file("var/cache/apt/archives/a_1_amd64.deb", 70'000);
    system.file("var/cache/apt/archives/partial/b.deb", 30'000);
    system.file("var/cache/apt/archives/lock", 90'000);
    system.link("var/cache/apt/archives/c.deb", system.path("var/cache/apt/archives/lock"));
    const auto apt = at("/var/cache/apt/archives");
    EXPECT_EQ(apt.bytes, blocks("var/cache/apt/archives/a_1_amd64.deb")
                             + blocks("var/cache/apt/archives/partial/b.deb"));
    EXPECT_EQ(apt.command, "sudo apt clean");
    EXPECT_FALSE(apt.isUpTo);

    system.file("var/cache/dnf/updates-1/packages/a.rpm", 70'000);
    system.file("var/cache/dnf/updates-1/repodata/primary.xml.gz", 90'000);
    EXPECT_EQ(at("/var/cache/dnf").bytes, blocks("var/cache/dnf/updates-1/packages/a.rpm"));

    system.file("var/cache/pacman/pkg/tool-1.0-1-x86_64.pkg.tar.zst", 70'000);
    system.file("var/cache/pacman/pkg/tool-2.0-1-x86_64.pkg.tar.zst", 90'000);
    system.folder("var/lib/pacman/local/tool-2.0-1");
    EXPECT_EQ(at("/var/cache/pacman/pkg").bytes, blocks("var/cache/pacman/pkg/tool-1.0-1-x86_64.pkg.tar.zst"))
        << "what is installed is kept";
}

TEST_F(LinuxSystemPlacesTest, OrphansAreThoseThatThePackageManagerNames) {
    system.file("var/lib/dpkg/status", std::string_view(R"(Package: linux-image-6.1.0-1-amd64
Status: install ok installed
Architecture: amd64
Installed-Size: 400000

Package: libold
Status: install ok installed
Architecture: i386
Installed-Size: 1000

Package: removed
Status: deinstall ok config-files
Architecture: amd64
Installed-Size: 7000
)"));
    EXPECT_EQ(at("/usr"), SystemPlace()) << "apt-get is not there, or took too long";
    EXPECT_EQ(asked.front(), (std::vector<std::string>{"apt-get", "--simulate", "autoremove"}));
    answer = "Reading package lists...\nRemv libold:i386 [1.0]\nRemv removed [1]\nRemv unknown";
    EXPECT_EQ(at("/usr").bytes, 1'024'000U);
    EXPECT_EQ(at("/usr").what, "Packages that nothing needs");
    *answer += "\nRemv linux-image-6.1.0-1-amd64 [6.1]\nInst other [2]\n";
    EXPECT_EQ(at("/usr").bytes, 410'624'000U);
    EXPECT_EQ(at("/usr").what, "Old kernels and packages that nothing needs");
}

TEST_F(LinuxSystemPlacesTest, OrphansOfPacmanHaveTheSizesOfItsDatabase) {
    system.file("var/lib/pacman/local/old-lib-2:1.0-3/desc",
                std::string_view("%NAME%\nold-lib\n\n%SIZE%\n7000\n"));
    system.file("var/lib/pacman/local/old-lib-extra-1-1/desc", std::string_view("%SIZE%\n500\n"));
    system.file("var/lib/pacman/local/ALPM_DB_VERSION", std::string_view("9\n"));
    answer = "old-lib\nunknown\n";
    EXPECT_EQ(at("/usr").bytes, 7000U);
    EXPECT_EQ(asked.front(), (std::vector<std::string>{"pacman", "-Qdtq"}));
}

TEST_F(LinuxSystemPlacesTest, OfTheJournalTheArchiveBeyondWhatIsKept) {
    const auto sparse = [&](const char* name, std::uint64_t bytes) {
        const auto path = system.file(std::string("var/log/journal/1f/") + name);
        const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
        ASSERT_EQ(::posix_fallocate(file.get(), 0, static_cast<off_t>(bytes)), 0);
    };
    constexpr std::uint64_t mebibyte = 1024 * 1024;
    sparse("system.journal", 50 * mebibyte);
    sparse("system@1-2-3.journal", 150 * mebibyte);
    EXPECT_EQ(at("/var/log/journal"), SystemPlace());
    sparse("user-1000@1-2.journal~", 60 * mebibyte);
    EXPECT_NEAR(static_cast<double>(at("/var/log/journal").bytes), 10.0 * mebibyte, 1e5);
}

TEST_F(LinuxSystemPlacesTest, OldRevisionsOfSnapsHaveTheirCommandsAndNoOtherNames) {
    for (const auto* name : {"tool_9.snap", "tool_10.snap", "tool_x1.snap", "base_3.snap", "disabled_1.snap",
                             "Odd name;_1.snap", "-x_1.snap", "_1.snap", "tool_$(x).snap", "tool.snap"})
        system.file(std::string("var/lib/snapd/snaps/") + name, 70'000);
    system.link("snap/tool/current", "10");
    system.link("var/lib/snapd/snap/base/current", "4");
    const auto snaps = at("/var/lib/snapd/snaps");
    EXPECT_EQ(snaps.command, "sudo snap remove base --revision=3 && sudo snap remove tool --revision=9"
                             " && sudo snap remove tool --revision=x1");
    EXPECT_EQ(snaps.bytes, 3 * blocks("var/lib/snapd/snaps/tool_9.snap"));
    EXPECT_FALSE(snaps.isUpTo);
    system.hardLink("var/lib/snapd/cache/1", "var/lib/snapd/snaps/tool_9.snap");
    EXPECT_TRUE(at("/var/lib/snapd/snaps").isUpTo) << "the cache keeps it";
}

TEST_F(LinuxSystemPlacesTest, ARuntimeIsUnusedWhenNoAppNamesItNorWhatItExtends) {
    const auto runtime = [&](const std::string& place, const std::string& more = "") {
        flatpak("var/lib/flatpak/runtime/" + place, "[Runtime]\nname=x\n" + more);
    };
    flatpak("var/lib/flatpak/app/org.a.App/x86_64/stable",
            "[Application]\nruntime=org.a.Platform/x86_64/2\n");
    flatpak("home/ann/.local/share/flatpak/app/org.b.App/x86_64/stable",
            "[Application]\nruntime=org.b.Platform/x86_64/1\nsdk=org.b.Sdk/x86_64/1\n");
    runtime("org.a.Platform/x86_64/2");
    runtime("org.a.Platform.GL.default/x86_64/2");
    runtime("org.a.Platform.Locale/x86_64/2", "[ExtensionOf]\nref=runtime/org.a.Platform/x86_64/2\n");
    runtime("org.b.Platform/x86_64/1");
    runtime("org.b.Sdk/x86_64/1");
    EXPECT_EQ(at("/var/lib/flatpak"), SystemPlace());
    runtime("org.a.Platform/x86_64/1");
    runtime("org.old.Locale/x86_64/1", "[ExtensionOf]\nref=runtime/org.a.Platform/x86_64/1\n");
    const auto flatpaks = at("/var/lib/flatpak");
    EXPECT_EQ(flatpaks.bytes,
              TreeScanner::measure(system.path("var/lib/flatpak/runtime/org.a.Platform/x86_64/1"), 1).bytes
                  + TreeScanner::measure(system.path("var/lib/flatpak/runtime/org.old.Locale"), 1).bytes);
    EXPECT_TRUE(flatpaks.isUpTo);
}

TEST_F(LinuxSystemPlacesTest, AStoreOfUnknownUseIsAnUpperBoundOrNotListed) {
    system.file("var/lib/docker/overlay2/x", 70'000);
    system.file("var/crash/_usr_bin_tool.crash", 70'000);
    system.file("timeshift/snapshots/2026-11-22_10-00-00/info.json");
    system.file("timeshift/snapshots/2026-11-22_10-00-00/localhost/x", 70'000);
    system.file("timeshift/snapshots/half/x");
    system.file(".snapshots/7/snapshot/x", 70'000);
    EXPECT_TRUE(at("/var/lib/docker").isUpTo);
    EXPECT_EQ(at("/timeshift").what, "1 snapshot of Timeshift");
    EXPECT_TRUE(at("/timeshift").isUpTo);
    EXPECT_EQ(at("/.snapshots").what, "1 snapshot of snapper");
    EXPECT_EQ(at("/.snapshots").bytes, blocks(".snapshots/7/snapshot/x"));
    EXPECT_FALSE(at("/var/crash").isUpTo);

    for (const auto* path : {"/var/lib/docker", "/timeshift"}) {
        unreadable = system.path() + path;
        EXPECT_EQ(at(path), SystemPlace()) << "a part of what may be freed tells nothing";
    }
    unreadable = system.path("var/crash");
    EXPECT_EQ(at("/var/crash").bytes, blocks("var/crash/_usr_bin_tool.crash")) << "all that is seen is freed";

    system.folder("elsewhere");
    system.link("var/lib/containers", system.path("elsewhere"));
    EXPECT_EQ(at("/var/lib/containers"), SystemPlace()) << "a link";
}

} // namespace
} // namespace orbel::platform

#include "SampleDisk.h"

#include "AppModel/KnownRoots.h"
#include "Safety/PathCanonicalizer.h"
#include "Saved/ScanArchive.h"
#include "Support/TreeBuilder.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>

namespace orbel::test {

namespace {

constexpr double GB = 1e9;

std::uint64_t bytes(double gigabytes) {
    return static_cast<std::uint64_t>(std::llround(gigabytes * GB));
}

/// The share of each file that a scan has found which was stopped early; or the disk as it was a week before.
ScanResult sample(double share, bool isEarlier = false) {
    TreeBuilder disk("/");
    const auto homes = disk.folder(0, "home");
    const auto home = disk.folder(homes, "mira");
    const auto add = [&](NodeIndex folder, std::string_view name, double size) {
        disk.file(folder, name, bytes(size * share));
    };
    const auto videos = disk.folder(home, "Videos");
    add(videos, "KJ_A014_ridge.mov", isEarlier ? 31.7 : 46.3);
    if (!isEarlier)
        add(videos, "harbour_master.mov", 41.5);
    const auto machines = disk.folder(home, "virtual-machines");
    add(machines, "win11-build.qcow2", 38.4);
    add(machines, "fedora-test.qcow2", 35.1);
    const auto downloads = disk.folder(home, "Downloads");
    add(downloads, "raspios-full.img", 30.9);
    const auto dataset =
        disk.file(isEarlier ? home : downloads, "dataset-lidar-tampere.zip", bytes(22.2 * share));
    disk.tree.inodes[dataset] = 77;
    if (isEarlier)
        add(downloads, "backup-of-the-old-laptop.tar", 18.9);
    const auto pictures = disk.folder(home, "Pictures");
    add(pictures, "raw.arw", 32.6);
    const auto projects = disk.folder(home, "Projects");
    const auto viewer =
        disk.folder(projects, "lidar-viewer with a name that is longer than most columns are");
    add(viewer, "target.bin", 32.3);
    const auto share_ = disk.folder(disk.folder(home, ".local"), "share");
    add(share_, "flatpak.bin", 29.2);
    const auto documents = disk.folder(home, "Documents");
    add(documents, "scans.pdf", 20.4);
    const auto cache = disk.folder(home, ".cache");
    add(cache, "yarn.tar.gz", isEarlier ? 12.1 : 8.4);
    const auto apps = disk.folder(home, "Apps");
    add(disk.folder(apps, "DaVinci.app", NodeFlags::package), "resolve", 24.3);
    const auto library = disk.folder(disk.folder(0, "var"), "lib");
    add(library, "overlay2.bin", 22.8);
    add(disk.folder(disk.folder(0, "usr"), "lib"), "libLLVM.so", 5.9);
    disk.folder(library, "private", NodeFlags::unreadable);
    disk.folder(home, "it's closed", NodeFlags::unreadable);

    ScanResult result{.tree = disk.build(),
                      .cancelled = share < 1,
                      .startedAt = {},
                      .firstProgress = {},
                      .duration = share < 1 ? 3.9 : 8.4};
    result.tree.unreadableCount = 2;
    result.tree.otherVolumeCount = 3;
    return result;
}

ScanOrigin ofYesterday(const std::string& machine, const VolumeInfo& volume) {
    return {.measuredAt = currentDate() - std::chrono::days(1),
            .duration = 8.4,
            .machine = machine,
            .user = {},
            .program = {},
            .volume = volume};
}

} // namespace

VolumeInfo SampleDisk::volume() {
    return {.total = bytes(511),
            .free = bytes(63.6),
            .used = bytes(421.8),
            .availableForImportantUsage = bytes(63.6)};
}

std::vector<platform::Mount> SampleDisk::mounts() {
    return {{.id = 1,
             .parentId = 0,
             .path = "/",
             .fileSystem = "btrfs",
             .source = "/dev/nvme0n1p3",
             .isNetwork = false},
            {.id = 2,
             .parentId = 1,
             .path = "/media/mira/backup",
             .fileSystem = "ext4",
             .source = "/dev/sda1",
             .isNetwork = false}};
}

ScanResult SampleDisk::measured() {
    return sample(1);
}

std::string SampleDisk::keptIn(const std::string& folder, const std::string& machine) {
    auto path = folder + "/kept.orbel";
    std::ofstream(path, std::ios::binary) << scanFileBytes(measured().tree, ofYesterday(machine, volume()));
    return path;
}

void SampleDisk::keepAsLast(AppEnvironment& environment, const std::string& folder) {
    environment.scansFolder = folder + "/scans";
    auto then = volume();
    then.used -= bytes(12);
    then.free += bytes(12);
    const auto tree = measured().tree;
    EXPECT_TRUE(ScanArchive(environment.scansFolder).keep(tree, ofYesterday({}, then), currentDate()));
    KnownRoots(*environment.settings, environment.dataVolumePath).note(tree.rootPath, tree.count());
}

ScanResult SampleDisk::partlyMeasured() {
    return sample(0.48);
}

ScanResult SampleDisk::lastWeek() {
    return sample(1, true);
}

std::vector<LargeOldQuery::Row> SampleDisk::largeOld(const LargeOldQuery& query, const FileTree& tree,
                                                     const SafetyPolicy& /*policy*/, Date /*now*/,
                                                     const LargeOldQuery::IsCancelled& /*isCancelled*/) {
    std::vector<LargeOldQuery::Row> rows;
    for (NodeIndex node = 1; node < tree.count(); ++node) {
        if (tree.isFolder(node) || !tree.isAttached(node) || tree.allocated(node) < query.minimumBytes
            || (!query.contents.empty() && !query.contents.contains(contentKind(tree, node))))
            continue;
        const auto path = tree.path(node, PathCanonicalizer::shared());
        LargeOldQuery::Row row;
        row.index = node;
        row.item.id = "largeOld:" + path;
        row.item.module = DeletionModule::largeOld;
        row.item.title = tree.name(node);
        row.item.detail = path;
        row.item.path = path;
        row.item.estimatedBytes = tree.allocated(node);
        row.bytes = tree.allocated(node);
        row.kind = tree.kind(node);
        row.lastUsed = {.date = Date(std::chrono::days(19'700 + 31 * (node % 17))),
                        .source = LastUsed::Source::lastOpened,
                        .record = static_cast<LastUsed::Record>(node % 3)};
        if (row.item.title == "win11-build.qcow2")
            row.openBy = {{.pid = 4711, .name = "qemu-system-x86"}};
        if (row.item.title == "fedora-test.qcow2")
            row.item.note = "May share storage; moving it may free less";
        if (!path.starts_with(home))
            row.item.blockedReason = "Protected: system location " + path.substr(0, path.find('/', 1));
        rows.push_back(std::move(row));
    }
    std::ranges::stable_sort(rows, std::greater{}, &LargeOldQuery::Row::bytes);
    return rows;
}

std::vector<SystemPlace> SampleDisk::systemPlaces(const std::string& /*home*/, const FileTree& /*tree*/,
                                                  const ScanCancellation& /*cancellation*/) {
    return {
        {.path = "/var/lib/docker",
         .bytes = bytes(12.4),
         .isUpTo = true,
         .what = "Containers, images and build caches of docker",
         .command = "docker system prune"},
        {.path = "/var/cache/apt/archives",
         .bytes = bytes(3.1),
         .what = "Downloaded packages",
         .command = "sudo apt clean"},
        {.path = "/var/lib/snapd/snaps",
         .bytes = bytes(0.64),
         .what = "Old revisions of snaps",
         .command =
             "sudo snap remove core22 --revision=1380 && sudo snap remove firefox --revision=4848 && sudo "
             "snap remove gnome-42-2204 --revision=141"}};
}

ScanProgress SampleDisk::progress() {
    return {.entries = 612'408,
            .bytes = bytes(186.2),
            .unreadable = 97,
            .elapsed = 3.9,
            .topLevel = {{.name = "virtual-machines", .bytes = bytes(57.4), .isFolder = true},
                         {.name = "Videos", .bytes = bytes(52.5), .isFolder = true},
                         {.name = "Downloads", .bytes = bytes(22.5), .isFolder = true},
                         {.name = "Documents", .bytes = bytes(10), .isFolder = true},
                         {.name = "Projects", .bytes = bytes(9.9), .isFolder = true},
                         {.name = "swap.img", .bytes = bytes(9.8), .isFolder = false},
                         {.name = "Pictures", .bytes = bytes(9.4), .isFolder = true},
                         {.name = "Apps", .bytes = bytes(7.4), .isFolder = true}}};
}

} // namespace orbel::test

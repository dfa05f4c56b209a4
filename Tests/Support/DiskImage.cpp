#include "Support/DiskImage.h"

#include "Support/ChildProcess.h"
#include "Support/RunProgram.h"
#include "Support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <vector>

#include <sys/mount.h>

namespace orbel::test {

namespace {

namespace fs = std::filesystem;

struct Kind {
    std::uint64_t leastBytes;
    std::vector<std::string> options; ///< of its mkfs
    std::string mountOptions;
};

const Kind& kindOf(const std::string& name) {
    static const std::map<std::string, Kind> kinds{
        {"ext4", {16ULL << 20, {"-q", "-m", "0"}, "loop,commit=600"}},
        {"xfs", {300ULL << 20, {"-q"}, "loop"}},
        {"btrfs", {128ULL << 20, {"-q", "-m", "single"}, "loop,commit=600"}}};
    return kinds.at(name);
}

void require(std::vector<std::string> words) {
    const auto name = words.front();
    if (const auto run = runProgram(std::move(words)); run.status != 0)
        throw std::runtime_error(name + " failed: " + run.errors);
}

} // namespace

std::optional<std::string> reasonAgainstImages(const std::string& kind) {
    if (!isRoot())
        return "mounting needs root";
    const TemporaryFolder folder;
    const auto image = folder.path("image");
    try {
        makeImage(kind, image);
        require({"unshare", "-m", "mount", "-t", kind, "-o", "loop", image, folder.path()});
    } catch (const std::exception& error) {
        return error.what();
    }
    return std::nullopt;
}

void makeImage(const std::string& kind, const std::string& image, std::uint64_t bytes) {
    std::ofstream(image).flush();
    fs::resize_file(image, bytes == 0 ? kindOf(kind).leastBytes : bytes);
    std::vector<std::string> words{"mkfs." + kind};
    words.insert(words.end(), kindOf(kind).options.begin(), kindOf(kind).options.end());
    words.push_back(image);
    require(std::move(words));
}

void mountImage(const std::string& kind, const std::string& image, const std::string& folder) {
    require({"mount", "-t", kind, "-o", kindOf(kind).mountOptions, image, folder});
}

void unmount(const std::string& folder) {
    if (::umount2(folder.c_str(), 0) != 0)
        throw std::runtime_error("cannot unmount " + folder);
}

void copyImage(const std::string& from, const std::string& to) {
    require({"cp", "--sparse=always", from, to});
}

void onQuickDisk(const std::function<void()>& body) {
    if (reasonAgainstImages("ext4")) {
        body();
        return;
    }
    const TemporaryFolder folder;
    inChildProcess([&] {
        useOwnMountTable();
        const auto memory = folder.folder("memory");
        const auto disk = folder.folder("disk");
        mountTmpfs(memory.c_str(), "300m");
        makeImage("ext4", memory + "/image", 256ULL << 20);
        mountImage("ext4", memory + "/image", disk);
        ::setenv("TMPDIR", disk.c_str(), 1);
        // What other programs write meanwhile would decide which flushes are made.
        bindMount(folder.file("meminfo", "\nDirty: 0 kB\nWriteback: 0 kB\n").c_str(), "/proc/meminfo");
        body();
    });
}

} // namespace orbel::test

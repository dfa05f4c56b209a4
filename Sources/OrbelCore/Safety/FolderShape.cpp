#include "Safety/FolderShape.h"

#include "Platform/FileStatus.h"
#include "Util/PathText.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace orbel {

namespace {

constexpr bool isFile = false;
constexpr bool isDir = true;

constexpr FolderShape repository{.meaning = "a Git repository",
                                 .parts = {{{"HEAD", isFile}, {"objects", isDir}, {"refs", isDir}}},
                                 .isProtected = false};

/// The protected ones first.
constexpr auto shapes = std::to_array<FolderShape>({
    {.meaning = "a Borg backup",
     .parts = {{{"README", isFile}, {"config", isFile}, {"data", isDir}}},
     .beginnings = {"index.", "hints.", "nonce"}},
    {.meaning = "a restic backup",
     .parts =
         {{{"snapshots", isDir}, {"keys", isDir}, {"index", isDir}, {"data", isDir}, {"config", isFile}}}},
    {.meaning = "a snapshot of snapper",
     .parts = {{{"info.xml", isFile}, {"snapshot", isDir}}},
     .insideOf = ".snapshots"},
    {.meaning = "a snapshot of Timeshift", .parts = {{{"info.json", isFile}}}, .insideOf = "snapshots"},
    {.meaning = "a mailbox (Maildir)", .parts = {{{"cur", isDir}, {"new", isDir}, {"tmp", isDir}}}},
    {.meaning = "a Wine prefix", .parts = {{{"system.reg", isFile}, {"dosdevices", isDir}}}},
    {.meaning = "a Steam library", .parts = {{{"common", isDir}}}, .beginnings = {"appmanifest_"}},
    repository,
    {.meaning = "a Python environment", .parts = {{{"pyvenv.cfg", isFile}}}, .isProtected = false},
});

/// The names in a folder on the disk.
class NamesOnDisk final : public FolderShape::Names {
public:
    explicit NamesOnDisk(const std::string& folder) : folder_(folder) {}

    bool has(const FolderShape::Part& part) const override {
        const auto status = platform::fileStatus(joinedPath(folder_, part.name));
        return status && (status->type == platform::FileType::directory) == part.isFolder;
    }

    bool hasBeginning(std::string_view beginning) const override {
        std::error_code error;
        std::filesystem::directory_iterator entries(folder_, error);
        for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error))
            if (entries->path().filename().native().starts_with(beginning))
                return true;
        return false;
    }

private:
    const std::string& folder_;
};

} // namespace

bool FolderShape::matches(const Names& names, std::string_view above) const {
    if (!insideOf.empty() && insideOf != above)
        return false;
    for (const auto& part : parts)
        if (!part.name.empty() && !names.has(part))
            return false;
    return beginnings.front().empty() || std::ranges::any_of(beginnings, [&](auto beginning) {
               return !beginning.empty() && names.hasBeginning(beginning);
           });
}

std::span<const FolderShape> FolderShape::all() {
    return shapes;
}

const FolderShape& FolderShape::gitRepository() {
    return repository;
}

std::span<const FolderShape> FolderShape::allProtected() {
    static const auto firstOther = std::ranges::find(shapes, false, &FolderShape::isProtected);
    return {shapes.begin(), firstOther};
}

const FolderShape* FolderShape::at(const std::string& folder, std::span<const FolderShape> among) {
    const NamesOnDisk names(folder);
    const auto above = lastPathComponent(parentPath(folder));
    const auto found =
        std::ranges::find_if(among, [&](const FolderShape& shape) { return shape.matches(names, above); });
    return found == among.end() ? nullptr : &*found;
}

} // namespace orbel

#include "Delete/InUse.h"

#include "Safety/RealPath.h"
#include "Scan/Walker.h"

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <utility>

namespace orbel {

namespace {

FileIdentity identityOf(const platform::UsedFile& file) {
    return {.device = file.device, .inode = file.inode};
}

template <class Value>
std::size_t hashOf(const Value& value) {
    return std::hash<Value>()(value);
}

/// What lies in a folder, to be asked for by identity, whatever name a process knows it by.
class FolderContents {
public:
    explicit FolderContents(const std::string& folder) {
        const ScanCancellation never;
        tree_ = Walker::walk(folder, std::nullopt, never, std::chrono::hours(1), {}).tree;
        nodes_.reserve(tree_.count());
        for (NodeIndex node = 0; node < tree_.count(); ++node)
            nodes_.emplace(tree_.inode(node), node);
    }

    bool contains(const FileIdentity& object) const {
        // Numbers repeat on every device, and on some file systems not all in one folder shows the same
        // device: a node that has the number is asked for its own.
        const auto [first, last] = nodes_.equal_range(object.inode);
        return std::any_of(first, last, [&](const auto& entry) {
            return FileIdentity::of(tree_.walkedPath(entry.second)) == object;
        });
    }

private:
    FileTree tree_;
    std::unordered_multimap<std::uint64_t, NodeIndex> nodes_;
};

/// Whether the process uses the item, as far as its path or its identity tells.
bool usesItem(const platform::ProcessInfo& process, const std::string& path, const FileStamp& stamp) {
    return std::ranges::any_of(process.files, [&](const platform::UsedFile& file) {
        if (file.inode != 0 && identityOf(file) == stamp.identity)
            return true;
        return stamp.isDirectory ? RealPath::isInside(file.path, path) : file.path == path;
    });
}

bool usesSomethingIn(const platform::ProcessInfo& process, const FolderContents& folder) {
    return std::ranges::any_of(process.files, [&](const platform::UsedFile& file) {
        return file.inode != 0 && folder.contains(identityOf(file));
    });
}

} // namespace

std::optional<std::string> useReason(const std::vector<ProcessUse>& users) {
    std::vector<std::string> names;
    for (const auto& user : users)
        if (std::ranges::find(names, user.name) == names.end())
            names.push_back(user.name);
    switch (names.size()) {
    case 0:
        return std::nullopt;
    case 1:
        return "In use by " + names[0];
    case 2:
        return "In use by " + names[0] + " and " + names[1];
    case 3:
        return "In use by " + names[0] + ", " + names[1] + " and " + names[2];
    default:
        return "In use by " + names[0] + ", " + names[1] + " and " + std::to_string(names.size() - 2)
               + " more";
    }
}

MappedFilesSnapshot takeMappedSnapshot() {
    const auto takenAt = std::chrono::system_clock::now();
    auto processes = platform::processFiles();
    auto known = std::make_shared<std::unordered_set<std::size_t>>();
    for (const auto& process : processes.processes)
        for (const auto& file : process.files) {
            if (file.inode != 0)
                known->insert(hashOf(identityOf(file)));
            known->insert(hashOf(file.path));
        }
    return {.takenAt = takenAt, .processes = std::move(processes), .known = std::move(known)};
}

InUseReport inUse(const std::string& path, const FileStamp& stamp, const MappedFilesSnapshot& snapshot) {
    std::optional<FolderContents> folder;
    if (stamp.isDirectory)
        folder.emplace(path);
    InUseReport report;
    report.uncheckedProcesses = snapshot.processes.unchecked;
    if (!stamp.isDirectory && snapshot.known && !snapshot.known->contains(hashOf(stamp.identity))
        && !snapshot.known->contains(hashOf(path)))
        return report;
    for (const auto& process : snapshot.processes.processes)
        if (usesItem(process, path, stamp) || (folder && usesSomethingIn(process, *folder)))
            report.users.push_back(ProcessUse::of(process));
    report.reason = useReason(report.users);
    return report;
}

} // namespace orbel

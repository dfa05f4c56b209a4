#include "Delete/InUseChecker.h"

#include "Util/PathText.h"

#include <algorithm>
#include <set>

namespace orbel {

InUseChecker::OpenFiles::OpenFiles(const MappedFilesSnapshot& snapshot) {
    for (const auto& process : snapshot.processes.processes) {
        const Process number = processes_.size();
        processes_.push_back(ProcessUse::of(process));
        for (const auto& file : process.files) {
            if (file.inode != 0)
                byIdentity_[{.device = file.device, .inode = file.inode}].push_back(number);
            if (!file.path.empty())
                byPath_.emplace_back(file.path, number);
        }
    }
    std::ranges::sort(byPath_);
    const auto repeated = std::ranges::unique(byPath_);
    byPath_.erase(repeated.begin(), repeated.end());
}

std::vector<ProcessUse> InUseChecker::OpenFiles::users(const FileIdentity& identity, const std::string& path,
                                                       bool isPackage) const {
    std::set<Process> users;
    if (const auto found = byIdentity_.find(identity); found != byIdentity_.end())
        users.insert(found->second.begin(), found->second.end());
    // What lies inside a folder sorts right behind the folder's own path and a slash.
    const auto addFrom = [&](const std::string& beginning, const auto& belongs) {
        for (auto at = std::ranges::lower_bound(byPath_, std::pair(beginning, Process{0}));
             at != byPath_.end() && belongs(at->first); ++at)
            users.insert(at->second);
    };
    addFrom(path, [&](const std::string& used) { return used == path; });
    if (isPackage) {
        const auto inside = joinedPath(path, "");
        addFrom(inside, [&](const std::string& used) { return used.starts_with(inside); });
    }
    std::vector<ProcessUse> found;
    found.reserve(users.size());
    for (const Process user : users)
        found.push_back(processes_[user]);
    return found;
}

} // namespace orbel

#include "AppModel/AppEnvironment.h"

#include "Find/AppInventory.h"
#include "Find/SeenPackages.h"
#include "Journal/JournalStore.h"
#include "Platform/Home.h"
#include "Platform/HomeTrash.h"
#include "Platform/Places.h"
#include "Safety/FullDiskAccess.h"
#include "Safety/SafetyPolicy.h"
#include "Saved/ScanArchive.h"
#include "Scan/TreeScanner.h"

#include <unistd.h>

namespace orbel {

namespace {

std::optional<std::uint64_t> bytesInTrash(const std::string& trashFolder) {
    constexpr int workers = 2;
    const auto items = platform::trashedItemsFolder(trashFolder);
    if (::access(items.c_str(), R_OK) != 0)
        return std::nullopt;
    return TreeScanner::measure(items, workers).bytes;
}

std::vector<LargeOldQuery::Row> largeOld(const LargeOldQuery& query, const FileTree& tree,
                                         const SafetyPolicy& policy, Date now,
                                         const LargeOldQuery::IsCancelled& isCancelled) {
    return query.run(tree, policy, now, InUseChecker::OpenFiles(takeMappedSnapshot()), isCancelled);
}

} // namespace

AppEnvironment AppEnvironment::ofThisUser() {
    AppEnvironment environment;
    environment.options = LaunchOptions::current();
    environment.home = platform::homeFolder();
    environment.dataVolumePath = VolumeInfo::dataVolumePath();
    environment.trashFolder = platform::homeTrash(environment.home);
    const auto applicationSupport = platform::places(environment.home).applicationSupport;
    environment.journalPath = JournalStore::defaultPath(applicationSupport);
    // In another user's home, nothing is to be left.
    const SafetyPolicy policy(environment.home);
    if (!policy.homeReason()) {
        environment.scansFolder = ScanArchive::defaultFolder(applicationSupport);
        environment.seenPackagesPath = SeenPackages::defaultPath(applicationSupport);
    }
    environment.scan = [](const std::string& root, const ScanCancellation& cancellation,
                          const ScanProgressCallback& progress, const Exclusions& exclusions) {
        return TreeScanner::scan(root, std::nullopt, cancellation, progress, exclusions);
    };
    environment.readVolume = VolumeInfo::read;
    environment.mountTable = platform::mountTable;
    environment.measureTrash = bytesInTrash;
    environment.isFullDiskAccessGranted = FullDiskAccess::isGranted;
    environment.findLargeOld = largeOld;
    environment.systemPlaces = [](const std::string& home, const FileTree& tree,
                                  const ScanCancellation& cancellation) {
        return SystemPlaces::find(home, tree, cancellation);
    };
    environment.now = std::chrono::system_clock::now;
    environment.installedApps = [] { return AppInventory::scan(AppInventory::defaultFolders()); };
    environment.installedIds = [home = policy.homePath()] { return platform::installedIds(home); };
    environment.runningPrograms = platform::runningPrograms;
    environment.openFiles = [] { return InUseChecker::OpenFiles(takeMappedSnapshot()); };
    return environment;
}

} // namespace orbel

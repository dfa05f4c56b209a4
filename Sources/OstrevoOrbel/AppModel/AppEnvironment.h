#pragma once

#include "Delete/InUseChecker.h"
#include "Delete/TrashOperations.h"
#include "Find/InstalledApp.h"
#include "Find/LargeOldQuery.h"
#include "Find/SystemPlaces.h"
#include "Launch/LaunchOptions.h"
#include "Platform/InstalledIds.h"
#include "Platform/MountTable.h"
#include "Platform/RunningPrograms.h"
#include "Ports/Appearance.h"
#include "Ports/Desktop.h"
#include "Ports/Diagnostics.h"
#include "Ports/LoginItem.h"
#include "Ports/Notifier.h"
#include "Ports/Tray.h"
#include "Scan/ScanCancellation.h"
#include "Scan/ScanProgress.h"
#include "Scan/ScanResult.h"
#include "Scan/VolumeInfo.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <QSettings>
#include <QString>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

class SafetyPolicy;

/// What the model stands on: where things are, and every question that it asks of the world. The application
/// gives the live ones, a test its own. The functions may be called by any thread.
struct AppEnvironment {
    LaunchOptions options;
    std::string home;
    std::string dataVolumePath; ///< what "the whole disk" means
    std::string trashFolder;
    std::string journalPath;
    std::string seenPackagesPath; ///< of what was installed; empty when it is not to be known later
    std::string scansFolder;      ///< of earlier scans (ScanArchive); empty when none are to be kept

    /// Blocks until the scan is done. Progress comes on the thread that it is called on.
    std::function<ScanResult(const std::string& root, const ScanCancellation&, const ScanProgressCallback&,
                             const Exclusions&)>
        scan;
    std::function<std::optional<VolumeInfo>(const std::string& path)> readVolume;
    std::function<std::vector<platform::Mount>()> mountTable;
    /// Bytes of all that is in the Trash whose folder this is; absent when it cannot be read.
    std::function<std::optional<std::uint64_t>(const std::string& trashFolder)> measureTrash;
    std::function<std::optional<bool>(const std::string& home)> isFullDiskAccessGranted;
    /// Runs the query over a tree, with what is open at the moment. Blocks.
    using FindLargeOld = std::function<std::vector<LargeOldQuery::Row>(const LargeOldQuery&, const FileTree&,
                                                                       const SafetyPolicy&, Date now,
                                                                       const LargeOldQuery::IsCancelled&)>;
    FindLargeOld findLargeOld;
    /// What commands free outside the home, with sizes from the tree where it has them. Blocks.
    std::function<std::vector<SystemPlace>(const std::string& home, const FileTree&, const ScanCancellation&)>
        systemPlaces;
    std::function<std::chrono::system_clock::time_point()> now;
    /// The applications that are installed, those that show themselves first. Blocks.
    std::function<std::vector<InstalledApp>()> installedApps;
    /// All names and packages that are installed; absent: nothing is taken for removed. Blocks.
    std::function<platform::InstalledIds()> installedIds;
    std::function<std::vector<platform::RunningProgram>()> runningPrograms;
    std::function<InUseChecker::OpenFiles()> openFiles; ///< absent: none are. Blocks.
    /// Asks these to quit, as their own menus would; false when none of them can be asked. Blocks.
    std::function<bool(const std::vector<platform::RunningProgram>&)> askToQuit;

    std::shared_ptr<TrashOperations> trash; ///< absent: the live one, over `trashFolder`
    std::shared_ptr<QSettings> settings;
    std::shared_ptr<Desktop> desktop;
    std::shared_ptr<Notifier> notifier;
    std::shared_ptr<LoginItem> loginItem;
    std::shared_ptr<Tray> tray;               ///< absent: the desktop has none
    std::shared_ptr<Appearance> appearance;   ///< absent: light, unless dark is chosen
    std::shared_ptr<Diagnostics> diagnostics; ///< absent unless a run is to be measured

    /// Tells the diagnostics, if there are any.
    void mark(std::string_view name) const {
        if (diagnostics)
            diagnostics->mark(name);
    }

    /// The live one for everything but the services, which need the application that they serve.
    static AppEnvironment ofThisUser();
};

} // namespace orbel

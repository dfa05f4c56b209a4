#pragma once

#include "AppModel/AppEnvironment.h"
#include "Find/LargeOldQuery.h"
#include "Find/SystemPlaces.h"
#include "Platform/MountTable.h"
#include "Scan/ScanProgress.h"
#include "Scan/ScanResult.h"
#include "Scan/VolumeInfo.h"

#include <string>
#include <vector>

namespace orbel::test {

/// A disk as somebody's might be, with round figures that add up, for screens to show.
struct SampleDisk {
    static constexpr const char* home = "/home/mira";

    static VolumeInfo volume();
    static std::vector<platform::Mount> mounts();
    /// What a scan of all of it finds, in 8.4 seconds.
    static ScanResult measured();
    /// The same, kept as a file in this folder: its path. Measured yesterday on a computer of this name.
    static std::string keptIn(const std::string& folder, const std::string& machine);
    /// Has a scene that lives in this folder open with it: kept yesterday, when 12 GB more were free.
    static void keepAsLast(AppEnvironment& environment, const std::string& folder);
    /// What a scan has found that is stopped after 3.9 seconds.
    static ScanResult partlyMeasured();
    /// What a scan found a week before: one file came since, one went, one moved, others grew or shrank.
    static ScanResult lastWeek();
    /// Its large files, all of which are old; one is open, one shares its storage, some are protected.
    static std::vector<LargeOldQuery::Row> largeOld(const LargeOldQuery& query, const FileTree& tree,
                                                    const SafetyPolicy& policy, Date now,
                                                    const LargeOldQuery::IsCancelled& isCancelled);
    /// What commands of this disk's system free.
    static std::vector<SystemPlace> systemPlaces(const std::string& home, const FileTree& tree,
                                                 const ScanCancellation& cancellation);
    /// What that scan reported last.
    static ScanProgress progress();
};

} // namespace orbel::test

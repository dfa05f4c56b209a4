#include "Platform/UsageRecords.h"

#include "Platform/Home.h"
#include "Platform/Linux/Portable/RecentlyUsed.h"
#include "Platform/Places.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/UnixTime.h"

#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace orbel::platform {

namespace {

constexpr std::uint64_t longestList = 64 << 20;

/// The list tells paths as programs were given them: a home folder that is reached through a link is named by
/// the link.
UseDates listedUses(const std::string& home) {
    UseDates uses;
    const auto namedHome = homeFolder();
    const auto list = joinedPath(places(home).applicationSupport, "recently-used.xbel");
    for (auto& [path, date] : recentlyUsedIn(readRegularFile(list, longestList).value_or("")))
        uses.emplace(isPathInside(path, namedHome) ? joinedPath(home, path.substr(namedHome.size())) : path,
                     date);
    return uses;
}

Date dateOf(const struct statx_timestamp& time) {
    const std::chrono::nanoseconds since1970(nanosSince1970(time.tv_sec, time.tv_nsec));
    return Date(std::chrono::floor<std::chrono::microseconds>(since1970));
}

bool isBefore(const struct statx_timestamp& one, const struct statx_timestamp& other) {
    return std::pair(one.tv_sec, one.tv_nsec) < std::pair(other.tv_sec, other.tv_nsec);
}

/// When the file was last read, if its file system keeps that; else when it was made, if that was after its
/// last change: a copy or a download that was given an old time. Listing a folder is a use to the file
/// system, and the scan itself does it: only files are asked.
std::optional<UsageRecord> fileSystemRecord(const std::string& path, const struct statx& status) {
    using Keeper = UsageRecord::Keeper;
    struct statvfs volume {};
    if (!S_ISREG(status.stx_mode) || ::statvfs(path.c_str(), &volume) != 0)
        return std::nullopt;
    const bool keepsAccess = (volume.f_flag & ST_NOATIME) == 0;
    if (!keepsAccess && (status.stx_mask & STATX_BTIME) == 0)
        return std::nullopt;
    const auto& time = keepsAccess ? status.stx_atime : status.stx_btime;
    if (!isBefore(status.stx_mtime, time))
        return std::nullopt;
    return UsageRecord{.date = dateOf(time), .keeper = keepsAccess ? Keeper::accessTime : Keeper::birthTime};
}

std::optional<UsageRecord> lastUse(const UseDates& listed, const std::string& path) {
    struct statx status {};
    if (::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT,
                STATX_TYPE | STATX_MODE | STATX_ATIME | STATX_MTIME | STATX_BTIME, &status)
        != 0)
        return std::nullopt;
    std::optional<UsageRecord> last;
    // What was changed after it was put on the list has been used since.
    if (const auto found = listed.find(path);
        found != listed.end() && found->second > dateOf(status.stx_mtime))
        last = {.date = found->second, .keeper = UsageRecord::Keeper::index};
    // Not everything that opens a file puts it on the list.
    if (const auto kept = fileSystemRecord(path, status); kept && (!last || kept->date > last->date))
        last = kept;
    return last;
}

} // namespace

UsageLookup usageLookup(const std::string& home) {
    return [listed = std::make_shared<const UseDates>(listedUses(home))](const std::string& path) {
        return lastUse(*listed, path);
    };
}

} // namespace orbel::platform

#include "AppModel/DiskMoment.h"

#include "AppModel/AppEnvironment.h"
#include "Platform/HomeTrash.h"
#include "Safety/RealPath.h"

#include <atomic>

namespace orbel {

DiskReader::DiskReader(const AppEnvironment& environment)
    : readVolume_(environment.readVolume),
      measureTrash_(environment.measureTrash),
      dataVolumePath_(environment.dataVolumePath),
      trashFolder_(environment.trashFolder) {}

DiskMoment DiskReader::read(const std::string& measuredRoot) const {
    static std::atomic<std::uint64_t> lastNumber = 0;
    DiskMoment moment{
        .disk = {}, .measured = {}, .trash = measureTrash_(trashFolder_), .number = ++lastNumber};
    moment.disk = readVolume_(dataVolumePath_);
    moment.measured = measuredRoot == dataVolumePath_ ? moment.disk : readVolume_(measuredRoot);
    return moment;
}

std::string DiskReader::trashedItems() const {
    const auto items = platform::trashedItemsFolder(trashFolder_);
    return RealPath::resolve(items).value_or(items);
}

} // namespace orbel

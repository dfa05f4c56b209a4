#include "Find/LastUsedReader.h"

namespace orbel {

LastUsed LastUsedReader::read(const std::string& path, Date modified) const {
    using Keeper = platform::UsageRecord::Keeper;
    using Source = LastUsed::Source;
    using Record = LastUsed::Record;
    const auto use = lookup_(path);
    if (!use)
        return {.date = modified};
    switch (use->keeper) {
    case Keeper::index:
        return {.date = use->date, .source = Source::lastOpened, .record = Record::usageIndex};
    case Keeper::accessTime:
        return {.date = use->date, .source = Source::lastOpened, .record = Record::accessTime};
    case Keeper::birthTime:
        break;
    }
    return {.date = use->date, .source = Source::lastModified, .record = Record::creationTime};
}

} // namespace orbel

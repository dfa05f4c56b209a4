#include "Find/LastUsedReader.h"

namespace orbel {

LastUsed LastUsedReader::read(const std::string& path, Date modified) const {
    const auto use = lookup_(path);
    if (!use)
        return {.date = modified};
    return {.date = use->date,
            .source = LastUsed::Source::lastOpened,
            .record = use->keeper == platform::UsageRecord::Keeper::index ? LastUsed::Record::usageIndex
                                                                          : LastUsed::Record::accessTime};
}

} // namespace orbel

#include "AppModel/JournalFlow.h"

#include "AppModel/AppModel.h"

namespace orbel {

JournalFlow::JournalFlow(AppModel& app) : app_(app) {}

QString JournalFlow::countText() const {
    return {};
}

QString JournalFlow::summary() const {
    return {};
}

} // namespace orbel

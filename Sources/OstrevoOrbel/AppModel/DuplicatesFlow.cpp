#include "AppModel/DuplicatesFlow.h"

#include "AppModel/AppModel.h"

namespace orbel {

DuplicatesFlow::DuplicatesFlow(AppModel& app) : app_(app) {}

QString DuplicatesFlow::countText() const {
    return {};
}

QString DuplicatesFlow::summary() const {
    return {};
}

} // namespace orbel

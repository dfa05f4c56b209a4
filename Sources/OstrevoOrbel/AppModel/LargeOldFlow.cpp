#include "AppModel/LargeOldFlow.h"

#include "AppModel/AppModel.h"

namespace orbel {

LargeOldFlow::LargeOldFlow(AppModel& app) : app_(app) {}

QString LargeOldFlow::countText() const {
    return {};
}

QString LargeOldFlow::summary() const {
    return {};
}

} // namespace orbel

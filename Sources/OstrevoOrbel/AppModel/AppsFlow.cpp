#include "AppModel/AppsFlow.h"

#include "AppModel/AppModel.h"

namespace orbel {

AppsFlow::AppsFlow(AppModel& app) : app_(app) {}

QString AppsFlow::countText() const {
    return {};
}

QString AppsFlow::summary() const {
    return {};
}

} // namespace orbel

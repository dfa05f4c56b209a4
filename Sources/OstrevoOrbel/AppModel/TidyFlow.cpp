#include "AppModel/TidyFlow.h"

#include "AppModel/AppModel.h"

namespace orbel {

TidyFlow::TidyFlow(AppModel& app) : app_(app) {}

QString TidyFlow::countText() const {
    return {};
}

QString TidyFlow::summary() const {
    return {};
}

} // namespace orbel

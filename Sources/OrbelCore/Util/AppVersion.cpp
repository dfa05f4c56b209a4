#include "Util/AppVersion.h"

namespace orbel {

const std::string& appVersion() {
    static const std::string version = ORBEL_VERSION;
    return version;
}

} // namespace orbel

#include "Platform/ProgramFile.h"

namespace orbel::platform {

// An application is a folder there.
bool isSelfContainedProgram(const std::string& /*path*/) {
    return false;
}

} // namespace orbel::platform

#include "Platform/ProgramFile.h"

#include "Platform/Linux/Portable/AppImage.h"

namespace orbel::platform {

bool isSelfContainedProgram(const std::string& path) {
    return isAppImage(path);
}

} // namespace orbel::platform

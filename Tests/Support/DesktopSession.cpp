#include "Support/DesktopSession.h"

#include <filesystem>

namespace orbel::test {

std::vector<std::string> desktopSession(const std::string& home, const std::string& shellCommand) {
    const auto runtime = home + "/runtime";
    std::filesystem::create_directories(runtime);
    return {"env",
            "LC_ALL=C.UTF-8",
            "HOME=" + home,
            "XDG_DATA_HOME=" + home + "/.local/share",
            "XDG_RUNTIME_DIR=" + runtime,
            ORBEL_LOCAL_MOUNTS,
            "dbus-run-session",
            "--",
            "sh",
            "-c",
            shellCommand};
}

} // namespace orbel::test

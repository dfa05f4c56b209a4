#include "Platform/Home.h"

#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace orbel::platform {

std::string homeFolder() {
    // Safe beside other threads as long as none changes the environment, and none ever does.
    if (const char* home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
        home != nullptr && home[0] == '/')
        return home;
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr
        && found->pw_dir != nullptr)
        return found->pw_dir;
    return {};
}

} // namespace orbel::platform

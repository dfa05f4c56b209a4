#include "Platform/Home.h"

#include <cstdlib>
#include <vector>

#include <pwd.h>
#include <unistd.h>

namespace orbel::platform {

std::string homeFolder() {
    // The system's own frameworks ask the password database first. It is also the safer answer here: sudo
    // keeps $HOME, so a command run with it would otherwise write root's files into the user's home.
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr
        && found->pw_dir != nullptr && found->pw_dir[0] == '/')
        return found->pw_dir;
    // Safe beside other threads as long as none changes the environment, and none ever does.
    if (const char* home = std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe)
        home != nullptr && home[0] == '/')
        return home;
    return {};
}

} // namespace orbel::platform

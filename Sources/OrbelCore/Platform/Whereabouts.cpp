#include "Platform/Whereabouts.h"

#include <array>

#include <pwd.h>
#include <unistd.h>

namespace orbel::platform {

std::string machineName() {
    std::array<char, 256> name{};
    // A longer one may come without its end.
    return ::gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

std::string userName() {
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    const auto user = ::geteuid();
    if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr)
        return std::to_string(user);
    return entry.pw_name;
}

} // namespace orbel::platform

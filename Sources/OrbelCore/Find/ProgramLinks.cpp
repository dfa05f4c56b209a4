#include "Find/ProgramLinks.h"

#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <string>

namespace orbel {

namespace {

/// Of browsers and of programs that are built like one.
constexpr std::array<std::string_view, 3> singletonNames{"SingletonLock", "SingletonCookie",
                                                         "SingletonSocket"};

/// "127.0.1.1:+4711": the address of the machine and the process that holds a profile.
bool isAddressAndProcess(std::string_view text) {
    const auto colon = text.rfind(':');
    if (colon == std::string_view::npos || colon == 0)
        return false;
    auto process = text.substr(colon + 1);
    if (process.starts_with('+'))
        process.remove_prefix(1);
    return !process.empty() && process.find_first_not_of("0123456789") == std::string_view::npos
           && text.substr(0, colon).find_first_not_of("0123456789abcdefABCDEF.:") == std::string_view::npos;
}

} // namespace

bool isProgramsOwnLink(std::string_view path, std::string_view text) {
    const auto name = lastPathComponent(path);
    const bool isPath = text.find('/') != std::string_view::npos;
    return std::ranges::find(singletonNames, name) != singletonNames.end()
           || (name == "lock" && isAddressAndProcess(text))
           || (name.starts_with(".#") && !isPath && text.find('@') != std::string_view::npos) // an editor's
           || text.starts_with('@')                                       // a socket without a file
           || lastPathComponent(parentPath(path)) == "dosdevices"         // drives and ports of Wine
           || text.find(".git/annex/objects/") != std::string_view::npos; // content that is kept elsewhere
}

} // namespace orbel

#include "Safety/SteamLibrary.h"
#include "Util/Check.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

// Whatever bytes are in the place of a game's list: reading them ends, and only digits go into an address.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto game = orbel::steamGameIn({reinterpret_cast<const char*>(data), size});
    if (!game)
        return 0;
    ORBEL_CHECK(std::ranges::all_of(game->appId, [](char byte) { return byte >= '0' && byte <= '9'; }),
                "an id is digits");
    ORBEL_CHECK(orbel::isValidUtf8(game->name) && game->name.find('\n') == std::string::npos, "one line");
    return 0;
}

#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orbel {

/// A game that Steam has installed, as its list says.
struct SteamGame {
    std::string appId;  ///< digits only
    std::string name;   ///< on one line, valid UTF-8
    std::string folder; ///< its name in "common", as bytes

    bool operator==(const SteamGame&) const = default;
};

/// The game that the text of an appmanifest_*.acf describes; absent when it names none. Any bytes
/// may be given, and are read to their end.
std::optional<SteamGame> steamGameIn(std::string_view manifest);

/// The games in each library that was looked at, by the path of its folder "steamapps".
using SteamLibraries = std::unordered_map<std::string, std::vector<SteamGame>>;

/// The game of the library in `steamapps` that lies in its common/`folder`; null when no list there names it.
/// Reads all lists of a library that is not in `known`. One thread at a time.
const SteamGame* steamGameAt(const std::string& steamapps, std::string_view folder, SteamLibraries& known);

} // namespace orbel

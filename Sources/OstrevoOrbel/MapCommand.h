#pragma once

#include "Export/MapSvg.h"

#include <expected>
#include <optional>
#include <span>
#include <string>

namespace orbel {

/// What `--map-svg ROOT FILE [--size WxH]` asks for.
struct MapRequest {
    std::string root;
    std::string file;
    MapSvg::Size size;

    bool operator==(const MapRequest&) const = default;
};

/// The request in `arguments` (all words, the program's own path first), absent when there is none. An error
/// is why it cannot be followed: since the command writes a file, nothing is passed over that is not
/// understood. The first "--" ends the switches.
std::expected<std::optional<MapRequest>, std::string> mapRequestIn(std::span<const std::string> arguments);

/// Measures the folder, writes its map, and ends the process. Returns when `arguments` do not ask for it.
void runMapCommandIfRequested(std::span<const std::string> arguments);

} // namespace orbel

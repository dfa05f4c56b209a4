#pragma once

#include <cstdint>
#include <string_view>

namespace orbel {

/// Takes what a scripted run is measured by. Called on the main thread.
class Diagnostics {
public:
    Diagnostics() = default;
    virtual ~Diagnostics() = default;
    Diagnostics(const Diagnostics&) = delete;
    Diagnostics& operator=(const Diagnostics&) = delete;

    /// Something that happened now.
    virtual void mark(std::string_view name) = 0;
    /// How many tiles the map last laid out.
    virtual void setTiles(std::int64_t tiles) = 0;
};

} // namespace orbel

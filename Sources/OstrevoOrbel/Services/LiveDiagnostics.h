#pragma once

#include "Ports/Diagnostics.h"

#include <chrono>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// Records what a scripted run is measured by, and writes it as one JSON file. Main thread only.
class LiveDiagnostics final : public Diagnostics {
public:
    using Clock = std::chrono::steady_clock;

    /// `path`: of the file; `start`: the moment from which marks are counted.
    explicit LiveDiagnostics(std::string path, Clock::time_point start = Clock::now());

    void mark(std::string_view name) override;
    void setTiles(std::int64_t tiles) override { tiles_ = tiles; }
    /// The main thread was away from its events for that long; the longest time counts.
    void noteStall(std::chrono::duration<double, std::milli> stall);

    /// Writes the file anew: "marks" (name and milliseconds since the start, in order), "longestStall" in
    /// milliseconds, "tiles", "peakFootprintBytes". False when it could not be written.
    bool write() const;

    nlohmann::json json() const;

private:
    struct Mark {
        std::string name;
        double milliseconds;
    };

    double sinceStart() const;

    std::string path_;
    Clock::time_point start_;
    std::vector<Mark> marks_;
    double longestStall_ = 0;
    double longestStallEnd_ = 0;
    std::int64_t tiles_ = 0;
};

} // namespace orbel

#pragma once

#include "Scan/ScanProgress.h"

#include <cstddef>
#include <functional>
#include <string_view>

namespace orbel {

/// One line of a terminal that says how far a scan is, written anew with every report, from one second on.
class ProgressLine {
public:
    /// `write` puts text on the terminal, which is so many columns wide.
    ProgressLine(std::function<void(std::string_view)> write, std::size_t columns)
        : write_(std::move(write)), columns_(columns) {}

    void show(const ScanProgress& progress);
    /// Leaves the line as it was before the first report.
    void erase();

private:
    std::function<void(std::string_view)> write_;
    std::size_t columns_;
    std::size_t taken_ = 0; ///< columns of what stands there
};

} // namespace orbel

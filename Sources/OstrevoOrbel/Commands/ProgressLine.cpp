#include "Commands/ProgressLine.h"

#include "Safety/ByteFormat.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace orbel {

void ProgressLine::show(const ScanProgress& progress) {
    if (progress.elapsed < 1)
        return;
    auto line = std::to_string(progress.entries) + " entries, " + ByteFormat::string(progress.bytes) + ", "
                + std::to_string(static_cast<std::uint64_t>(progress.elapsed)) + " s";
    // In the last column, some terminals already go on to the next line.
    line.resize(std::min(line.size(), columns_ - std::min<std::size_t>(columns_, 1)));
    const auto width = line.size();
    line.resize(std::max(width, taken_), ' ');
    taken_ = width;
    write_("\r" + line);
}

void ProgressLine::erase() {
    if (taken_ > 0)
        write_("\r" + std::string(taken_, ' ') + "\r");
    taken_ = 0;
}

} // namespace orbel

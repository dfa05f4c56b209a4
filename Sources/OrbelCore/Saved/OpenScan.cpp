#include "Saved/OpenScan.h"

#include "Saved/NcduImport.h"
#include "Util/ReadFile.h"

namespace orbel {

namespace {

bool isScanFile(const std::string& path) {
    constexpr std::size_t enough = 64;
    const auto beginning = beginningOfRegularFile(path, enough);
    return beginning && looksLikeScanFile(*beginning);
}

} // namespace

bool isScan(const std::string& path) {
    return isScanFile(path) || isBegunAsNcdu(*textPieces(openRegularFile(path)));
}

std::optional<std::expected<KeptScan, std::string>> openScan(const std::string& path) {
    constexpr std::uint64_t largest = 8ULL * 1024 * 1024 * 1024;
    if (!isScanFile(path))
        return scanFromNcdu(*textPieces(openRegularFile(path)));
    const auto bytes = readRegularFile(path, largest);
    return bytes ? scanFromFile(*bytes) : std::unexpected("The scan file could not be read");
}

} // namespace orbel

#include "Scan/VolumeInfo.h"

#include "Platform/VolumeStatistics.h"

#include <nlohmann/json.hpp>

namespace orbel {

namespace {

std::uint64_t difference(std::uint64_t from, std::uint64_t what) {
    return from > what ? from - what : 0;
}

std::optional<std::uint64_t> bytesOf(std::uint64_t blocks, std::uint64_t blockSize) {
    std::uint64_t bytes = 0;
    if (__builtin_mul_overflow(blocks, blockSize, &bytes))
        return std::nullopt;
    return bytes;
}

} // namespace

std::uint64_t VolumeInfo::purgeable() const {
    return difference(availableForImportantUsage, free);
}

std::uint64_t VolumeInfo::otherVolumes() const {
    std::uint64_t known = 0;
    if (__builtin_add_overflow(used, free, &known))
        return 0;
    return difference(total, known);
}

std::optional<VolumeInfo> VolumeInfo::read(const std::string& path) {
    const auto statistics = platform::volumeStatistics(path);
    if (!statistics)
        return std::nullopt;
    const auto total = bytesOf(statistics->totalBlocks, statistics->blockSize);
    const auto free = bytesOf(statistics->availableBlocks, statistics->blockSize);
    const auto occupied =
        bytesOf(difference(statistics->totalBlocks, statistics->freeBlocks), statistics->blockSize);
    if (!total || !free || !occupied)
        return std::nullopt;
    return VolumeInfo{.total = *total,
                      .free = *free,
                      .used = spaceUsed(path).value_or(*occupied),
                      .availableForImportantUsage =
                          platform::volumeAvailableForImportantUsage(path).value_or(*free)};
}

std::optional<std::uint64_t> VolumeInfo::spaceUsed(const std::string& path) {
    return platform::volumeSpaceUsed(path);
}

std::string VolumeInfo::dataVolumePath() {
    return platform::dataVolumePath();
}

void to_json(nlohmann::json& json, const VolumeInfo& volume) {
    json = {{"total", volume.total},
            {"free", volume.free},
            {"used", volume.used},
            {"availableForImportantUsage", volume.availableForImportantUsage}};
}

void from_json(const nlohmann::json& json, VolumeInfo& volume) {
    json.at("total").get_to(volume.total);
    json.at("free").get_to(volume.free);
    json.at("used").get_to(volume.used);
    json.at("availableForImportantUsage").get_to(volume.availableForImportantUsage);
}

} // namespace orbel

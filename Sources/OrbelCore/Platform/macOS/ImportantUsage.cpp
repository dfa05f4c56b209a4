#include "Platform/macOS/ImportantUsage.h"

#include "Platform/macOS/AutoreleasePool.h"
#include "Platform/macOS/CoreFoundation.h"

namespace orbel::platform {

namespace {

using namespace cf;

struct VolumeProperties {
    Boolean (*copyResourceProperty)(Reference url, Reference key, void* value, Reference* error) =
        library().find<Boolean(Reference, Reference, void*, Reference*)>("CFURLCopyResourcePropertyForKey");
    TypeID (*numberType)() = library().find<TypeID()>("CFNumberGetTypeID");
    Boolean (*numberValue)(Reference number, Index kind, void* value) =
        library().find<Boolean(Reference, Index, void*)>("CFNumberGetValue");
    const Reference* importantUsageKey =
        library().find<const Reference>("kCFURLVolumeAvailableCapacityForImportantUsageKey");

    bool isComplete() const {
        return isAvailable() && copyResourceProperty != nullptr && numberType != nullptr
               && numberValue != nullptr && importantUsageKey != nullptr;
    }
};

const VolumeProperties& volumeProperties() {
    static const VolumeProperties opened;
    return opened;
}

} // namespace

std::optional<std::uint64_t> importantUsageCapacity(const std::string& path) {
    const auto& framework = volumeProperties();
    if (!framework.isComplete())
        return std::nullopt;
    const AutoreleasePool pool;
    const auto url = urlOfFile(path);
    if (!url)
        return std::nullopt;
    Reference property = nullptr;
    if (!framework.copyResourceProperty(url.get(), *framework.importantUsageKey, &property, nullptr))
        return std::nullopt;
    const Owned number(property); // null when the volume has no such value
    constexpr Index signed64 = 4; // kCFNumberSInt64Type
    std::int64_t bytes = 0;
    if (!isOf(number.get(), framework.numberType) || !framework.numberValue(number.get(), signed64, &bytes)
        || bytes < 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(bytes);
}

} // namespace orbel::platform

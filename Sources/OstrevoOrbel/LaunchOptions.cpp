#include "LaunchOptions.h"

#include "Platform/Process.h"
#include "Scan/VolumeInfo.h"
#include "Util/ParseNumber.h"

#include <algorithm>

namespace orbel {

bool contains(std::span<const std::string> arguments, std::string_view name) {
    return std::ranges::find(arguments, name) != arguments.end();
}

std::optional<std::string> valueAfter(std::span<const std::string> arguments, std::string_view name) {
    const auto found = std::ranges::find(arguments, name);
    if (found == arguments.end() || found + 1 == arguments.end())
        return std::nullopt;
    return *(found + 1);
}

LaunchOptions::LaunchOptions(std::span<const std::string> arguments) {
    const auto value = [&](std::string_view name) { return valueAfter(arguments, name); };
    const auto number = [&](std::string_view name) -> std::optional<double> {
        const auto text = value(name);
        return text ? parseDouble(*text) : std::nullopt;
    };
    if (const auto screen = value("--open"))
        openScreen = screenNamed(*screen);
    scanPath = value("--scan");
    if (scanPath == "volume")
        scanPath = VolumeInfo::dataVolumePath();
    quitAfterScan = contains(arguments, "--quit-after-scan");
    diagnosticsPath = value("--diagnostics");
    snapshotPath = value("--snapshot");
    snapshotDelay = number("--snapshot-delay");
    scanDelay = number("--scan-delay").value_or(0);
    if (const auto hovers = value("--simulate-hover"))
        simulatedHovers = parseInteger(*hovers).value_or(0);
    selectApp = value("--select-app");
}

const LaunchOptions& LaunchOptions::current() {
    static const LaunchOptions options(platform::processArguments());
    return options;
}

} // namespace orbel

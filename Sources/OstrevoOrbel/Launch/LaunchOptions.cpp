#include "Launch/LaunchOptions.h"

#include "Commands/Request.h"
#include "Platform/Process.h"
#include "Scan/VolumeInfo.h"
#include "Util/ParseNumber.h"

namespace orbel {

const std::string_view windowHelp = R"(
ostrevo-orbel opens a window when no command is given. It takes these switches:

  --scan PATH   Measure PATH at once; "volume" is the whole disk.
  --scan-delay SECONDS
                Wait that long before the scan.
  --open-scan FILE
                Show a scan that was kept in a file, unless --scan is given.
  --open SCREEN Show overview, map, large, duplicates, uninstall, tidy or
                journal.
  --select-app NAME
                Show Uninstall with that app: its name, id or path.
  --appearance light|dark
  --snapshot FILE [--snapshot-delay SECONDS]
                After the scan, write a picture of the window as PNG.
  --simulate-hover COUNT
                Before that, move the pointer over the window.
  --diagnostics FILE
                Write what the run took as JSON when it ends.
  --quit-after-scan
                End when all of this is done.
)";

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
    openScanPath = value("--open-scan");
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

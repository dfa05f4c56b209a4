#pragma once

#include "Launch/Screen.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orbel {

/// The switches that script the window, read from the command line once. A plain value.
///
/// A switch's value is the word right after its first occurrence, whatever it looks like; a switch that is
/// the last word has none and counts as absent. What is unknown is ignored.
struct LaunchOptions {
    LaunchOptions() = default;
    /// `arguments`: all words of the command line, the program's own path first.
    explicit LaunchOptions(std::span<const std::string> arguments);

    /// The options of this process.
    static const LaunchOptions& current();

    std::optional<Screen> openScreen;           ///< --open SCREEN
    std::optional<std::string> scanPath;        ///< --scan PATH; "volume" stands for the whole disk
    std::optional<std::string> openScanPath;    ///< --open-scan FILE
    bool quitAfterScan = false;                 ///< --quit-after-scan
    std::optional<std::string> diagnosticsPath; ///< --diagnostics FILE
    std::optional<std::string> snapshotPath;    ///< --snapshot FILE
    std::optional<double> snapshotDelay;        ///< --snapshot-delay SECONDS
    double scanDelay = 0;                       ///< --scan-delay SECONDS
    std::int64_t simulatedHovers = 0;           ///< --simulate-hover COUNT
    std::optional<std::string> selectApp;       ///< --select-app NAME
    bool allowWithoutFullDiskAccess = false;    ///< no switch sets it
};

/// What `--help` says of them. `./run` takes the names of the window's switches from the source of this text.
extern const std::string_view windowHelp;

} // namespace orbel

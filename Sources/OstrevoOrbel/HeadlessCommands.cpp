#include "HeadlessCommands.h"

#include "LaunchOptions.h"
#include "Scan/TreeScanner.h"
#include "ScanReport.h"
#include "Util/JsonText.h"
#include "Util/ParseNumber.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>

namespace orbel {

namespace {

constexpr std::int64_t defaultTop = 20;

std::size_t topIn(std::span<const std::string> arguments) {
    const auto text = valueAfter(arguments, "--top");
    const auto top = text ? parseInteger(*text) : std::nullopt;
    return static_cast<std::size_t>(std::max<std::int64_t>(top.value_or(defaultTop), 0));
}

/// The process ends without unwinding: freeing a tree of millions of nodes one by one would only cost time.
[[noreturn]] void finish(const std::string& output) {
    const bool written =
        std::fwrite(output.data(), 1, output.size(), stdout) == output.size() && std::fflush(stdout) == 0;
    if (!written)
        std::fprintf(stderr, "orbel: could not write the result: %s\n", std::strerror(errno));
    std::_Exit(written ? EXIT_SUCCESS : EXIT_FAILURE);
}

} // namespace

std::string HeadlessCommands::scanReportText(const std::string& root,
                                             std::span<const std::string> arguments) {
    const ScanCancellation nobodyCancels;
    const ScanResult result = TreeScanner::scan(root, std::nullopt, nobodyCancels, nullptr);
    return prettyJson(scanReport(root, result, topIn(arguments))) + "\n";
}

void HeadlessCommands::runIfRequested(std::span<const std::string> arguments) {
    if (const auto root = valueAfter(arguments, "--scan-json"))
        finish(scanReportText(*root, arguments));
}

} // namespace orbel

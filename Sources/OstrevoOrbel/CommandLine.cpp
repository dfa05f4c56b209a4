#include "CommandLine.h"

#include "HeadlessCommands.h"
#include "LaunchOptions.h"
#include "Util/AppVersion.h"

#include <cstdio>
#include <cstdlib>

namespace orbel {

namespace {

constexpr const char* usage = R"(Usage: orbel COMMAND

Measures where the space on a disk went.

  --scan-json ROOT [--top N]
                Measure ROOT, a folder or a file, and print a report as JSON:
                totals, what could not be read, the figures of the volume and
                the N largest entries directly in ROOT (20 unless given).
                Sizes are bytes on disk; a hard-linked file counts once, and
                other volumes are not entered.
  --help        Print this text.
  --version     Print the version.

Reports go to standard output, words to standard error. What cannot be read is
counted in the report and is no failure: the status is 0 when the report was
written, 1 when it could not be, 2 when no command was given.
)";

} // namespace

int runCommandLine(std::span<const std::string> arguments) {
    if (contains(arguments, "--help")) {
        std::fputs(usage, stdout);
        return EXIT_SUCCESS;
    }
    if (contains(arguments, "--version")) {
        std::printf("orbel %s\n", appVersion().c_str());
        return EXIT_SUCCESS;
    }
    HeadlessCommands::runIfRequested(arguments);
    std::fputs(usage, stderr);
    return 2;
}

} // namespace orbel

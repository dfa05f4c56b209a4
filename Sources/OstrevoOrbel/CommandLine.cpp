#include "CommandLine.h"

#include "Commands/CommandHelp.h"
#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Request.h"
#include "HeadlessCommands.h"
#include "ResourceFailure.h"
#include "Util/AppVersion.h"

namespace orbel {

void runCommandIfRequested(std::span<const std::string> arguments, std::string_view moreHelp) {
    endPlainlyWithoutResources();
    const auto switches = switchesIn(arguments);
    if (contains(switches, "--help") || contains(switches, "-h"))
        finish(commandHelp() + std::string(moreHelp));
    if (contains(switches, "--version") || contains(switches, "-V"))
        finish("orbel " + appVersion() + "\n");
    HeadlessCommands::runIfRequested(arguments);
}

void runCommandLine(std::span<const std::string> arguments) {
    runCommandIfRequested(arguments, "");
    HeadlessCommands::run(tableCommand, arguments);
}

} // namespace orbel

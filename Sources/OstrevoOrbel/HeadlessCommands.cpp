#include "HeadlessCommands.h"

#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Request.h"

#include <utility>

namespace orbel {

void HeadlessCommands::runIfRequested(std::span<const std::string> arguments) {
    if (const auto* command = strictCommandIn(arguments))
        run(*command, arguments);
    for (const auto* command : {&leftoversCommand, &duplicatesCommand, &scanCommand})
        if (const auto request = lenientRequest(*command, arguments))
            command->run(*request);
}

void HeadlessCommands::run(const Command& command, std::span<const std::string> arguments) {
    const auto request = strictRequest(command, arguments);
    if (!request)
        finishWrongUsage(request.error());
    command.run(*request);
    std::unreachable(); // every command ends the process
}

} // namespace orbel

#include "HeadlessCommands.h"

#include "Commands/CommandOutput.h"
#include "Commands/CommandTable.h"
#include "Commands/Request.h"

namespace orbel {

void HeadlessCommands::runIfRequested(std::span<const std::string> arguments) {
    if (const auto* command = strictCommandIn(arguments)) {
        const auto request = strictRequest(*command, arguments);
        if (!request)
            finishWrongUsage(request.error());
        command->run(*request);
    }
    for (const auto* command : {&leftoversCommand, &duplicatesCommand, &scanCommand})
        if (const auto request = lenientRequest(*command, arguments))
            command->run(*request);
}

} // namespace orbel

#include "Commands/CountOption.h"

#include "Commands/CommandOutput.h"
#include "Commands/Request.h"
#include "Util/ParseNumber.h"

namespace orbel {

std::optional<std::uint64_t> countOf(const Request& request, std::string_view option) {
    const auto text = request.value(option);
    if (!text)
        return std::nullopt;
    const auto number = parseInteger(*text);
    if (!number || *number < 0)
        finishWrongUsage(std::string(option) + " takes a whole number, 0 or more");
    return static_cast<std::uint64_t>(*number);
}

} // namespace orbel

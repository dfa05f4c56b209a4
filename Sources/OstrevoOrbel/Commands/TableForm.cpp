#include "Commands/TableForm.h"

#include "Platform/Terminal.h"
#include "Util/ParseNumber.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace orbel {

namespace {

/// Whether the locale that the environment asks for writes UTF-8.
bool asksForUtf8(const TableForm::Environment& environment) {
    for (const auto* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        auto locale = environment(name);
        if (locale.empty())
            continue;
        std::erase(locale, '-');
        std::ranges::transform(locale, locale.begin(),
                               [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
        return locale.contains("utf8");
    }
    return false;
}

} // namespace

TableForm TableForm::of(bool isTerminal, std::optional<std::size_t> columns, const Environment& environment) {
    TableForm form{.isTerminal = isTerminal, .isUnicode = asksForUtf8(environment)};
    if (!isTerminal)
        return form;
    const auto said = parseInteger(environment("COLUMNS")).value_or(0);
    form.columns = columns.value_or(said > 0 ? static_cast<std::size_t>(said) : form.columns);
    const auto terminal = environment("TERM");
    form.hasColour = environment("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb";
    return form;
}

TableForm TableForm::ofDescriptor(int descriptor) {
    return of(platform::isTerminal(descriptor), platform::terminalColumns(descriptor), [](const char* name) {
        const char* value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
        return std::string(value != nullptr ? value : "");
    });
}

} // namespace orbel

#include "Commands/CommandTable.h"

#include <algorithm>
#include <array>

namespace orbel {

std::span<const Command* const> commandTable() {
    static constexpr std::array table{
        &scanCommand,       &compareCommand, &mapCommand,         &ncduCommand,
        &duplicatesCommand, &largeCommand,   &tidyCommand,        &rebuildableCommand,
        &trashCommand,      &putBackCommand, &journalJsonCommand, &journalMarkdownCommand,
        &systemCommand,     &appsCommand,    &leftoversCommand,   &leftoversJsonCommand,
    };
    return table;
}

const Command* commandNamed(std::string_view name) {
    const auto table = commandTable();
    const auto found = std::ranges::find(table, name, &Command::name);
    return found == table.end() ? nullptr : *found;
}

} // namespace orbel

#pragma once

#include "Commands/Command.h"

#include <span>
#include <string_view>

namespace orbel {

// The commands, each in a source of its own.
extern const Command scanCommand;
extern const Command compareCommand;
extern const Command mapCommand;
extern const Command ncduCommand;
extern const Command duplicatesCommand;
extern const Command largeCommand;
extern const Command tidyCommand;
extern const Command rebuildableCommand;
extern const Command trashCommand;
extern const Command putBackCommand;
extern const Command journalJsonCommand;
extern const Command journalMarkdownCommand;
extern const Command systemCommand;
extern const Command appsCommand;
extern const Command leftoversCommand;
extern const Command leftoversJsonCommand;

/// All of them, in the order of the help.
std::span<const Command* const> commandTable();

/// The command of that name, exactly; null when there is none.
const Command* commandNamed(std::string_view name);

} // namespace orbel

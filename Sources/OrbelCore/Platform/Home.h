#pragma once

#include <string>

namespace orbel::platform {

/// The current user's home folder as the system names it, unresolved: `$HOME` when it is an absolute path,
/// else the user's entry in the password database; on macOS, as its own frameworks do, the entry first and
/// then `$HOME`. Empty when neither gives one.
std::string homeFolder();

} // namespace orbel::platform

#pragma once

#include "Find/InstalledApp.h"

#include <set>
#include <string>
#include <string_view>

namespace orbel {

/// Whether a name is an id as "org.example.App" is: three parts at least, none of them empty.
bool isReverseDns(std::string_view id);

/// Whether a name that is no such id, in lower case, may tell which program something belongs to: it is long
/// enough, and no common word.
bool isTellingWord(std::string_view word);

/// All names that an application might use, in lower case.
std::set<std::string> everyNameOf(const InstalledApp& app);

/// A name from the disk as evidence shows it: “org.example.App”.
std::string inQuotes(std::string_view name);

} // namespace orbel

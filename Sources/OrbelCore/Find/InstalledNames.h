#pragma once

#include "Find/InstalledApp.h"
#include "Platform/InstalledIds.h"
#include "Platform/RunningPrograms.h"

#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace orbel {

/// The names of everything that is installed here, in any case. What has one of them was not removed.
/// Immutable; any thread may ask it.
class InstalledNames {
public:
    /// `apps`: all applications, hidden ones too.
    InstalledNames(std::span<const InstalledApp> apps, const platform::InstalledIds& ids,
                   std::span<const platform::RunningProgram> running);

    /// Whether all names are known; else what none of these has may be installed nevertheless.
    bool isComplete() const { return isComplete_; }
    /// Whether something has the id, one that it is a part of, or one that is a part of it, by whole parts.
    bool hasId(std::string_view id) const;
    /// Whether something has exactly this name.
    bool hasName(std::string_view name) const;
    /// Whether one of an application's names is made with this word, unless that tells nothing.
    bool isAppCalled(std::string_view word) const;
    /// Whether an application, or what starts or runs, lies at this path or in it.
    bool hasProgramIn(std::string_view path) const;

    /// Whether what keeps packages under this name, as in InstalledIds, told of all of them.
    bool isAnswering(std::string_view manager) const { return packages_.contains(manager); }
    bool hasPackage(std::string_view manager, std::string_view name) const;

private:
    using Names = std::set<std::string, std::less<>>;

    bool isComplete_;
    Names names_;    ///< in lower case
    Names appWords_; ///< what the names of applications are made of, in lower case
    Names programs_; ///< absolute paths
    std::map<std::string, Names, std::less<>> packages_;
};

} // namespace orbel

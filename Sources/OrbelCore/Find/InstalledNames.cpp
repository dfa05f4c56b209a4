#include "Find/InstalledNames.h"

#include "Find/AppNames.h"
#include "Find/CommonWords.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

InstalledNames::InstalledNames(std::span<const InstalledApp> apps, const platform::InstalledIds& ids,
                               std::span<const platform::RunningProgram> running)
    : isComplete_(ids.isComplete), programs_(ids.programs.begin(), ids.programs.end()) {
    for (const auto& name : ids.names)
        names_.insert(lowerCase(name));
    for (const auto& [manager, names] : ids.packages) {
        auto& known = packages_[manager];
        for (const auto& name : names)
            names_.insert(*known.insert(lowerCase(name)).first);
    }
    for (const auto& app : apps) {
        auto names = everyNameOf(app);
        for (const std::string_view name : names)
            for (std::size_t from = 0; from < name.size();) {
                const auto end = std::min(name.find_first_of(".-_ /", from), name.size());
                appWords_.emplace(name.substr(from, end - from));
                from = end + 1;
            }
        appWords_.insert(names.begin(), names.end());
        names_.merge(names);
        programs_.insert(app.path);
        programs_.insert(app.executables.begin(), app.executables.end());
    }
    for (const auto& program : running)
        for (const auto& path : program.paths) {
            programs_.insert(path);
            for (const auto name : pathComponents(path))
                names_.insert(lowerCase(name));
        }
}

bool InstalledNames::hasId(std::string_view id) const {
    const auto wanted = lowerCase(id);
    if (names_.contains(wanted))
        return true;
    const auto longer = names_.lower_bound(wanted + ".");
    if (longer != names_.end() && longer->starts_with(wanted + "."))
        return true;
    // A single part is no id.
    const auto fewest = wanted.find('.');
    for (auto dot = wanted.rfind('.'); dot != std::string::npos && dot > fewest;
         dot = wanted.rfind('.', dot - 1))
        if (names_.contains(std::string_view(wanted).substr(0, dot)))
            return true;
    return false;
}

bool InstalledNames::hasName(std::string_view name) const {
    return names_.contains(lowerCase(name));
}

bool InstalledNames::isAppCalled(std::string_view word) const {
    const auto wanted = lowerCase(word);
    return isTellingWord(wanted) && appWords_.contains(wanted);
}

bool InstalledNames::hasProgramIn(std::string_view path) const {
    const auto inside = std::string(path) + "/";
    const auto next = programs_.lower_bound(inside);
    return programs_.contains(path) || (next != programs_.end() && next->starts_with(inside));
}

bool InstalledNames::hasPackage(std::string_view manager, std::string_view name) const {
    const auto known = packages_.find(manager);
    return known != packages_.end() && known->second.contains(lowerCase(name));
}

} // namespace orbel

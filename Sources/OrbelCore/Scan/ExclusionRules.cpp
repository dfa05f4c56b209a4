#include "Scan/ExclusionRules.h"

#include "Safety/PathCanonicalizer.h"
#include "Util/PathText.h"

#include <algorithm>
#include <fnmatch.h>
#include <utility>

namespace orbel::walk {

namespace {

bool isMatch(const std::string& pattern, const char* text) {
    return ::fnmatch(pattern.c_str(), text, FNM_PATHNAME) == 0;
}

} // namespace

ExclusionRules::ExclusionRules(const Exclusions& exclusions, const std::string& root)
    : belowRoot_(root == "/" ? 1 : root.size() + 1) {
    for (const auto& path : exclusions.paths)
        addPath(path);
    for (const auto& pattern : exclusions.patterns)
        addPattern(pattern);
    isEmpty_ = names_.empty() && namePatterns_.empty() && pathPatterns_.empty();
}

bool ExclusionRules::leavesOutName(std::string_view name) const {
    if (namePatterns_.empty())
        return false;
    const std::string text(name);
    return std::ranges::any_of(namePatterns_,
                               [&](const auto& pattern) { return isMatch(pattern, text.c_str()); });
}

bool ExclusionRules::mayLeaveOut(std::string_view name) const {
    if (names_.empty() && pathPatterns_.empty())
        return false;
    const std::string text(name);
    return names_.contains(text) || std::ranges::any_of(pathPatterns_, [&](const PathPattern& pattern) {
               return isMatch(pattern.lastName, text.c_str());
           });
}

bool ExclusionRules::leavesOutPath(const std::string& path) const {
    return paths_.contains(path) || std::ranges::any_of(pathPatterns_, [&](const PathPattern& pattern) {
               return isMatch(pattern.text, path.c_str() + (pattern.isBelowRoot ? belowRoot_ : 0));
           });
}

/// Under both names that it can have, since either may be the one that is walked.
void ExclusionRules::addPath(std::string path) {
    names_.insert(std::string(lastPathComponent(path)));
    paths_.insert(PathCanonicalizer::shared().dataVolumePath(path));
    paths_.insert(std::move(path));
}

void ExclusionRules::addPattern(std::string_view given) {
    while (given.ends_with('/'))
        given.remove_suffix(1);
    const bool isWholePath = given.starts_with('/');
    while (given.starts_with("./"))
        given.remove_prefix(2);
    if (given.empty())
        return;
    if (isWholePath && given.find_first_of("*?[\\") == std::string_view::npos) {
        addPath(excludedPath(given));
        return;
    }
    const auto slash = given.rfind('/');
    if (slash == std::string_view::npos)
        namePatterns_.emplace_back(given);
    else
        pathPatterns_.push_back({.text = std::string(given),
                                 .lastName = std::string(given.substr(slash + 1)),
                                 .isBelowRoot = !isWholePath});
}

} // namespace orbel::walk

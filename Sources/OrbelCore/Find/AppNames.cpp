#include "Find/AppNames.h"

#include "Find/CommonWords.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace orbel {

namespace {

std::string_view lastPart(std::string_view id) {
    return id.substr(id.rfind('.') + 1);
}

} // namespace

bool isReverseDns(std::string_view id) {
    constexpr std::ptrdiff_t fewestDots = 2;
    return std::ranges::count(id, '.') >= fewestDots && !id.starts_with('.') && !id.ends_with('.')
           && !id.contains("..") && !id.contains('/');
}

bool isTellingWord(std::string_view word) {
    constexpr std::size_t shortest = 4;
    return word.size() >= shortest && !word.contains('/') && !isCommonWord(word);
}

std::set<std::string> everyNameOf(const InstalledApp& app) {
    std::set<std::string> names;
    const auto add = [&](std::string_view name) {
        auto lower = lowerCase(name);
        if (lower.contains(' ')) {
            auto dashed = lower;
            std::ranges::replace(dashed, ' ', '-');
            names.insert(std::move(dashed));
            auto joined = lower;
            std::erase(joined, ' ');
            names.insert(std::move(joined));
        }
        names.insert(std::move(lower));
    };
    add(app.name);
    for (const auto* list : {&app.identifiers, &app.names, &app.appGroups})
        for (const auto& name : *list) {
            add(name);
            add(lastPart(name));
        }
    for (const auto& program : app.executables)
        add(lastPathComponent(program));
    if (app.bundleID)
        add(*app.bundleID);
    return names;
}

std::string inQuotes(std::string_view name) {
    return "“" + lossyUtf8(name) + "”";
}

} // namespace orbel

#include "Find/RebuildableRules.h"

#include "Util/Utf8.h"

#include <algorithm>

namespace orbel {

namespace {

/// What Gradle writes into a "build"; a folder of that name with anything else may be a part of the project.
constexpr auto madeByGradle = std::to_array<std::string_view>({"classes",
                                                               "libs",
                                                               "tmp",
                                                               "reports",
                                                               "generated",
                                                               "intermediates",
                                                               "kotlin",
                                                               "resources",
                                                               "outputs",
                                                               "distributions",
                                                               "test-results",
                                                               "docs",
                                                               "cache",
                                                               "jacoco",
                                                               "scripts",
                                                               "publications",
                                                               "install",
                                                               "dependency-cache",
                                                               "version",
                                                               "javadoc",
                                                               "processedResources",
                                                               "bin",
                                                               ".cxx",
                                                               "kotlinToolingMetadata",
                                                               "pluginDescriptors",
                                                               "pluginUnderTestMetadata",
                                                               "testResultsAggregation",
                                                               "problems",
                                                               "typespec",
                                                               "startScripts",
                                                               ".transforms",
                                                               "snapshot",
                                                               "sourcesJar",
                                                               "spotless"});

constexpr auto rules = std::to_array<RebuildableRule>({
    {.name = "node_modules", .beside = {"package.json"}, .program = "npm"},
    {.name = ".next", .beside = {"package.json"}, .program = "Next.js"},
    {.name = ".nuxt", .beside = {"package.json"}, .program = "Nuxt"},
    {.name = ".svelte-kit", .beside = {"package.json"}, .program = "SvelteKit"},
    {.name = ".parcel-cache", .beside = {"package.json"}, .program = "Parcel"},
    {.name = ".turbo", .beside = {"package.json"}, .program = "Turborepo"},
    {.name = "target", .beside = {"Cargo.toml"}, .program = "cargo"},
    {.name = "target", .beside = {"pom.xml"}, .program = "maven"},
    {.name = "build",
     .beside = {"build.gradle", "build.gradle.kts", "settings.gradle", "settings.gradle.kts"},
     .onlyHolds = madeByGradle,
     .program = "gradle"},
    {.name = ".gradle",
     .beside = {"build.gradle", "build.gradle.kts", "settings.gradle", "settings.gradle.kts"},
     .program = "gradle"},
    {.name = ".tox", .beside = {"tox.ini", "noxfile.py", "pyproject.toml"}, .program = "tox"},
    {.name = ".nox", .beside = {"tox.ini", "noxfile.py", "pyproject.toml"}, .program = "nox"},
    {.name = ".venv",
     .beside = {"pyproject.toml", "setup.py", "requirements.txt"},
     .holds = "pyvenv.cfg",
     .program = "python"},
    {.name = "venv",
     .beside = {"pyproject.toml", "setup.py", "requirements.txt"},
     .holds = "pyvenv.cfg",
     .program = "python"},
    {.name = "vendor", .beside = {"composer.json"}, .besideToo = "composer.lock", .program = "composer"},
    {.name = "Pods", .beside = {"Podfile.lock"}, .program = "CocoaPods"},
    {.name = "DerivedData", .beside = {"*.xcodeproj"}, .program = "Xcode"},
    {.name = "zig-cache", .beside = {"build.zig"}, .program = "zig"},
    {.name = ".zig-cache", .beside = {"build.zig"}, .program = "zig"},
    {.name = "zig-out", .beside = {"build.zig"}, .program = "zig"},
    {.name = "_build", .beside = {"mix.exs"}, .program = "mix"},
    {.name = "deps", .beside = {"mix.exs"}, .program = "mix"},
    {.name = "dist-newstyle", .beside = {"*.cabal", "cabal.project"}, .program = "cabal"},
    {.name = ".stack-work", .beside = {"stack.yaml"}, .program = "stack"},
    {.name = ".dart_tool", .beside = {"pubspec.yaml"}, .program = "dart"},
    {.name = "elm-stuff", .beside = {"elm.json"}, .program = "elm"},
    {.name = ".terraform", .beside = {"*.tf"}, .program = "terraform"},
});

bool agrees(std::string_view name, std::string_view wanted) {
    return wanted.starts_with('*') ? name.ends_with(wanted.substr(1)) : name == wanted;
}

/// The name in the folder that agrees with one of these.
std::optional<std::string_view> find(const FileTree& tree, NodeIndex folder,
                                     std::span<const std::string_view> wanted) {
    for (const NodeIndex child : tree.children(folder)) {
        const auto name = tree.nameBytes(child);
        if (std::ranges::any_of(wanted, [name](auto one) { return !one.empty() && agrees(name, one); }))
            return name;
    }
    return std::nullopt;
}

bool has(const FileTree& tree, NodeIndex folder, std::string_view name) {
    return name.empty() || find(tree, folder, std::span(&name, 1)).has_value();
}

} // namespace

std::span<const RebuildableRule> RebuildableRule::all() {
    return rules;
}

std::optional<std::string> RebuildableRule::evidence(const FileTree& tree, NodeIndex folder) const {
    const auto above = tree.parent(folder);
    if (!above || !has(tree, folder, holds) || !has(tree, *above, besideToo))
        return std::nullopt;
    const auto marker = find(tree, *above, beside);
    if (!marker)
        return std::nullopt;
    const auto isMade = [&](NodeIndex child) {
        return std::ranges::find(onlyHolds, tree.nameBytes(child)) != onlyHolds.end();
    };
    if (!onlyHolds.empty() && !std::ranges::all_of(tree.children(folder), isMade))
        return std::nullopt;
    std::string words;
    if (!holds.empty())
        words = std::string(holds) + " in it, ";
    words += lossyUtf8(*marker);
    if (!besideToo.empty())
        words += " and " + std::string(besideToo);
    return words + " beside it";
}

bool holdsOnlyCompiledPython(const FileTree& tree, NodeIndex folder) {
    const auto children = tree.children(folder);
    const auto isCompiled = [&](NodeIndex child) {
        return !tree.isFolder(child) && tree.nameBytes(child).ends_with(".pyc");
    };
    return !children.empty() && std::ranges::all_of(children, isCompiled);
}

std::optional<std::string> programOfCacheTag(std::string_view text) {
    constexpr std::string_view signature = "Signature: 8a477f597d28d172789f06886806bc55";
    constexpr std::string_view before = "created by ";
    constexpr std::size_t longestName = 40;
    if (!text.starts_with(signature))
        return std::nullopt;
    const auto at = text.find(before);
    if (at == std::string_view::npos)
        return "";
    auto name = text.substr(at + before.size());
    name = name.substr(0, name.find('\n'));
    while (name.ends_with('.') || name.ends_with(' ') || name.ends_with('\r'))
        name.remove_suffix(1);
    return name.size() <= longestName ? lossyUtf8(name) : "";
}

std::optional<std::string> projectOfCMakeCache(std::string_view text) {
    constexpr std::string_view key = "\nCMAKE_HOME_DIRECTORY:INTERNAL=";
    const auto at = text.find(key);
    if (at == std::string_view::npos)
        return std::nullopt;
    const auto value = text.substr(at + key.size());
    return std::string(value.substr(0, value.find_first_of("\r\n")));
}

} // namespace orbel

#include "Find/PlaceMarks.h"

#include "Safety/FolderShape.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/RealPath.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/FileKind.h"
#include "Scan/FolderShapes.h"
#include "Util/PathText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace orbel {

namespace {

constexpr std::array<std::string_view, 2> managedFolders{"node_modules", "site-packages"};

bool isAmong(const auto& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

PlaceMarks marksOfName(std::string_view name) {
    PlaceMarks marks;
    if (isPackage(name) || isVersionControlName(name))
        marks = marks | PlaceMarks::whole;
    if (isAmong(managedFolders, name))
        marks = marks | PlaceMarks::managed;
    if (name.starts_with('.'))
        marks = marks | PlaceMarks::hidden;
    return marks;
}

PlaceMarks marksOfNames(std::string_view path) {
    PlaceMarks marks;
    for (const auto name : pathComponents(path))
        marks = marks | marksOfName(name);
    return marks;
}

PlaceMarks marksOfRoot(const std::string& root, const SafetyPolicy& policy) {
    const auto& home = policy.homePath();
    std::string_view below = root;
    if (RealPath::isInside(root, home))
        below.remove_prefix(home.size());
    auto marks = marksOfNames(below);
    const auto holdsRoot = [&](const std::string& folder) { return RealPath::isInside(root, folder); };
    if (std::ranges::any_of(policy.guardedFolders(), holdsRoot))
        marks = marks | PlaceMarks::programData;
    std::string above;
    for (const auto name : pathComponents(root)) {
        above += '/';
        above += name;
        if (above != root && FolderShape::at(above) != nullptr)
            marks = marks | PlaceMarks::shaped;
    }
    return marks;
}

/// Hands the marks of each folder down to what is in it. The name and the place of `home` do not count.
void spread(const FileTree& tree, std::optional<NodeIndex> home, std::vector<PlaceMarks>& marks) {
    for (const auto& [node, shape] : shapedFolders(tree))
        marks[node] = marks[node] | PlaceMarks::shaped;
    for (NodeIndex i = 1; i < tree.count(); ++i) { // parents come before their children
        if (i == home)
            continue;
        const auto parent = tree.parentIndex[i];
        marks[i] = marks[i] | (parent == FileTree::noParent ? PlaceMarks::gone : marks[parent]);
        if (tree.isFolder(i))
            marks[i] = marks[i] | marksOfName(tree.nameBytes(i));
    }
}

} // namespace

std::vector<PlaceMarks> placeMarks(const FileTree& tree, const SafetyPolicy& policy) {
    std::vector<PlaceMarks> marks(tree.count());
    if (marks.empty())
        return marks;
    for (const auto& folder : policy.guardedFolders())
        if (const auto node = tree.index(folder, PathCanonicalizer::shared()))
            marks[*node] = PlaceMarks::programData;
    const auto home = tree.index(policy.homePath(), PathCanonicalizer::shared());
    marks[0] = marks[0] | marksOfRoot(tree.path(0, PathCanonicalizer::shared()), policy);
    if (home && *home != 0)
        marks[0] = marks[0] | PlaceMarks::outsideHome;
    spread(tree, home, marks);
    return marks;
}

std::vector<PlaceMarks> placeMarks(const FileTree& tree) {
    std::vector<PlaceMarks> marks(tree.count());
    if (marks.empty())
        return marks;
    marks[0] = marksOfNames(tree.rootPath);
    spread(tree, std::nullopt, marks);
    return marks;
}

} // namespace orbel

#include "Find/RebuildableFinder.h"

#include "Delete/ItemNote.h"
#include "Find/PlaceMarks.h"
#include "Find/RebuildableRules.h"
#include "Platform/GitRepository.h"
#include "Platform/Parallel.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/RealPath.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/FolderShapes.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <utility>

namespace orbel {

namespace {

constexpr std::string_view cacheTag = "CACHEDIR.TAG";
constexpr std::string_view cmakeCache = "CMakeCache.txt";
constexpr std::string_view compiledPython = "__pycache__";
/// Reading waits for the disk, so there are more of them than processors.
constexpr std::size_t readers = 16;

struct Evidence {
    std::string words;
    std::string program;
    bool isPlace = false; ///< the place alone tells it
};

using Candidates = std::map<NodeIndex, Evidence>;

bool isOfInterest(std::string_view name) {
    return name == cacheTag || name == cmakeCache || name == compiledPython
           || std::ranges::find(RebuildableRule::all(), name, &RebuildableRule::name)
                  != RebuildableRule::all().end();
}

/// "ruff" of ".ruff_cache"; empty for other names.
std::string programOfCacheFolder(std::string_view name) {
    constexpr std::string_view ending = "_cache";
    if (!name.starts_with('.') || !name.ends_with(ending))
        return "";
    return lossyUtf8(name.substr(1, name.size() - 1 - ending.size()));
}

std::string pathOf(const FileTree& tree, NodeIndex node) {
    return tree.path(node, PathCanonicalizer::shared());
}

/// What the names say of a node; the evidence belongs to `folder`.
class Names {
public:
    Names(const FileTree& tree, const std::vector<PlaceMarks>& marks) : tree_(tree), marks_(marks) {}

    std::optional<Evidence> ofFolder(NodeIndex folder) const {
        const auto name = tree_.nameBytes(folder);
        const auto parent = tree_.parent(folder);
        if (!parent)
            return std::nullopt;
        const auto above = marks_[*parent];
        if (name == compiledPython && !above.intersects(notInManaged)
            && holdsOnlyCompiledPython(tree_, folder))
            return Evidence{.words = "Only compiled Python in it", .program = "python"};
        // What programs bring along as a part of themselves looks like a project too.
        if (above.intersects(notInProjects))
            return std::nullopt;
        for (const auto& rule : RebuildableRule::all()) {
            if (rule.name != name)
                continue;
            if (auto words = rule.evidence(tree_, folder))
                return Evidence{.words = *std::move(words), .program = std::string(rule.program)};
        }
        return std::nullopt;
    }

    /// Looks into the file.
    std::optional<Evidence> ofFile(NodeIndex file) const {
        constexpr std::uint64_t largestTag = 64 * 1024;
        constexpr std::uint64_t largestCache = 8 * 1024 * 1024;
        const bool isTag = tree_.nameBytes(file) == cacheTag;
        const auto path = pathOf(tree_, file);
        const auto text = readRegularFile(path, isTag ? largestTag : largestCache);
        if (!text)
            return std::nullopt;
        if (isTag) {
            auto program = programOfCacheTag(*text);
            if (!program)
                return std::nullopt;
            if (program->empty())
                program = programOfCacheFolder(lastPathComponent(parentPath(path)));
            return Evidence{.words = std::string(cacheTag), .program = *std::move(program)};
        }
        const auto project = projectOfCMakeCache(*text);
        // One in the middle of its sources is no folder of its own.
        if (!project || !project->starts_with('/') || RealPath::isInside(*project, parentPath(path)))
            return std::nullopt;
        return Evidence{.words = std::string(cmakeCache), .program = "cmake"};
    }

    /// Whether a file of that name says anything about the folder around it.
    bool isMarker(NodeIndex file) const {
        const auto folder = tree_.parent(file);
        const auto flags = tree_.flags(file);
        if (!folder || *folder == 0 || flags.intersects(neverRead))
            return false;
        const auto name = tree_.nameBytes(file);
        return (name == cacheTag && !marks_[*folder].intersects(never))
               || (name == cmakeCache && !marks_[*folder].intersects(notInProjects));
    }

private:
    static constexpr NodeFlags neverRead =
        NodeFlags::folder | NodeFlags::symlink | NodeFlags::dataless | NodeFlags::otherVolume;
    static constexpr PlaceMarks never = PlaceMarks::gone | PlaceMarks::whole | PlaceMarks::outsideHome;
    static constexpr PlaceMarks notInManaged = never | PlaceMarks::managed | PlaceMarks::programData;
    static constexpr PlaceMarks notInProjects = notInManaged | PlaceMarks::hidden | PlaceMarks::shaped;

    const FileTree& tree_;
    const std::vector<PlaceMarks>& marks_;
};

/// The folders that agree with the path of a place, `depth` components of which lead to `folder`.
void addPlaces(const FileTree& tree, NodeIndex folder, const std::vector<std::string_view>& place,
               std::size_t depth, const std::string& program, Candidates& found) {
    if (depth == place.size()) {
        found[folder] = {.words = "A cache by its place", .program = program, .isPlace = true};
        return;
    }
    for (const NodeIndex child : tree.children(folder)) {
        const auto name = tree.nameBytes(child);
        const bool isAny = place[depth] == "*";
        if (tree.isFolder(child) && (isAny || name == place[depth]))
            addPlaces(tree, child, place, depth + 1, isAny && program.empty() ? lossyUtf8(name) : program,
                      found);
    }
}

void addPlaces(const FileTree& tree, const platform::RebuildablePlace& place, Candidates& found) {
    const auto root = pathOf(tree, 0);
    const auto above = pathComponents(root);
    const auto wanted = pathComponents(place.path);
    auto program = place.program;
    if (wanted.size() <= above.size())
        return;
    for (std::size_t i = 0; i < above.size(); ++i) {
        if (wanted[i] == "*" && program.empty())
            program = lossyUtf8(above[i]);
        else if (wanted[i] != "*" && wanted[i] != above[i])
            return;
    }
    addPlaces(tree, 0, wanted, above.size(), program, found);
}

Candidates candidates(const FileTree& tree, const SafetyPolicy& policy) {
    const auto marks = placeMarks(tree, policy);
    const Names names(tree, marks);
    Candidates found;
    for (const auto& place : policy.rebuildablePlaces())
        addPlaces(tree, place, found);
    std::vector<NodeIndex> files;
    for (const NodeIndex node : nodesNamed(tree, isOfInterest)) {
        if (names.isMarker(node))
            files.push_back(node);
        else if (tree.isFolder(node))
            if (auto evidence = names.ofFolder(node))
                found.try_emplace(node, *std::move(evidence));
    }
    std::vector<std::optional<Evidence>> said(files.size());
    forEachTask(files.size(), readers, [&](std::size_t i) { said[i] = names.ofFile(files[i]); });
    for (std::size_t i = 0; i < files.size(); ++i) {
        const auto folder = tree.parent(files[i]);
        if (auto& evidence = said[i]; folder && evidence)
            found.try_emplace(*folder, *std::move(evidence));
    }
    return found;
}

/// The nodes that hold one of these, at any depth, and these themselves.
std::set<NodeIndex> holding(const FileTree& tree, const std::vector<NodeIndex>& nodes) {
    std::set<NodeIndex> holders;
    for (std::optional<NodeIndex> node : nodes)
        while (node && holders.insert(*node).second)
            node = tree.parent(*node);
    return holders;
}

/// Which folders hold neither protected data nor a repository, and so no work that would be lost.
class Clean {
public:
    explicit Clean(const FileTree& tree)
        : tree_(tree), versioned_(holding(tree, nodesNamed(tree, isVersionControlName))) {
        std::vector<NodeIndex> bare;
        for (const auto& shaped : shapedFolders(tree))
            if (isGitRepository(tree, shaped.node))
                bare.push_back(shaped.node);
        bare_ = holding(tree, bare);
    }

    /// Package managers keep bare repositories in their caches.
    bool is(NodeIndex folder, bool isPlace) const {
        return !tree_.containsProtectedData(folder) && !versioned_.contains(folder)
               && (isPlace || !bare_.contains(folder));
    }

private:
    const FileTree& tree_;
    std::set<NodeIndex> versioned_;
    std::set<NodeIndex> bare_;
};

bool isInOneOf(const FileTree& tree, NodeIndex node, const std::set<NodeIndex>& folders) {
    for (auto above = tree.parent(node); above; above = tree.parent(*above))
        if (folders.contains(*above))
            return true;
    return false;
}

Date newestChange(const FileTree& tree, NodeIndex folder) {
    Date newest = tree.modified(folder);
    std::vector<NodeIndex> pending{folder};
    while (!pending.empty()) {
        const auto node = pending.back();
        pending.pop_back();
        newest = std::max(newest, Date(tree.modified(node)));
        const auto children = tree.children(node);
        pending.insert(pending.end(), children.begin(), children.end());
    }
    return newest;
}

/// The innermost work folder of git around the node.
std::optional<NodeIndex> workFolder(const FileTree& tree, NodeIndex node,
                                    const std::set<NodeIndex>& workFolders) {
    auto folder = tree.parent(node);
    while (folder && !workFolders.contains(*folder))
        folder = tree.parent(*folder);
    return folder;
}

/// What lies in a work folder and is not ignored may be a part of the work.
void askGit(const FileTree& tree, std::vector<RebuildableFinder::Row>& rows,
            const RebuildableFinder::IsCancelled& isCancelled) {
    std::set<NodeIndex> workFolders;
    for (const NodeIndex node : nodesNamed(tree, [](std::string_view name) { return name == ".git"; }))
        if (const auto folder = tree.parent(node))
            workFolders.insert(*folder);
    std::map<NodeIndex, std::vector<RebuildableFinder::Row*>> byWork;
    for (auto& row : rows)
        if (const auto work = workFolder(tree, row.index, workFolders))
            byWork[*work].push_back(&row);
    std::vector<std::pair<NodeIndex, std::vector<RebuildableFinder::Row*>>> works(byWork.begin(),
                                                                                  byWork.end());
    forEachTask(works.size(), [&](std::size_t i) {
        if (isCancelled && isCancelled())
            return;
        const auto work = pathOf(tree, works[i].first);
        std::vector<std::string> paths;
        for (const auto* row : works[i].second)
            paths.push_back(row->item.path.substr(work.size() + 1));
        const auto ignored = platform::ignoredPaths(joinedPath(work, ".git"), work, paths);
        for (std::size_t k = 0; k < paths.size(); ++k) {
            if (ignored && std::ranges::find(*ignored, paths[k]) != ignored->end())
                continue;
            auto& item = works[i].second[k]->item;
            item.preselected = false;
            if (ignored)
                item.note = ItemNote::joined(item.note, "Not ignored by git");
        }
    });
}

} // namespace

std::vector<RebuildableFinder::Row> RebuildableFinder::run(const FileTree& tree, const SafetyPolicy& policy,
                                                           Date now, const InUseChecker::OpenFiles& openFiles,
                                                           const IsCancelled& isCancelled) const {
    std::vector<Row> rows;
    if (tree.count() == 0)
        return rows;
    const Clean clean(tree);
    const auto home = tree.index(policy.homePath(), PathCanonicalizer::shared());
    std::set<NodeIndex> listed;
    auto seen = policy.seenFolders();
    // Folders come before what lies in them.
    for (auto& [node, evidence] : candidates(tree, policy)) {
        if (isCancelled && isCancelled())
            break;
        // What another volume shows there was not looked at, and may not answer.
        if (node == 0 || tree.flags(node).contains(NodeFlags::otherVolume) || tree.parent(node) == home
            || !clean.is(node, evidence.isPlace) || isInOneOf(tree, node, listed))
            continue;
        auto item = DeletionItem::fromTree(tree, node, DeletionModule::rebuildable, policy, seen);
        if (!item || policy.protectionReason(item->path, std::nullopt))
            continue;
        listed.insert(node);
        if (!item->blockedReason)
            item->blockedReason = useReason(openFiles.users(tree.identity(node), item->path, true));
        Row row{.index = node,
                .item = *std::move(item),
                .evidence = std::move(evidence.words),
                .program = std::move(evidence.program),
                .newestChange = newestChange(tree, node)};
        const std::chrono::duration<double> age = now - row.newestChange;
        row.item.preselected = row.item.isSelectable() && age.count() >= unusedFor;
        rows.push_back(std::move(row));
    }
    askGit(tree, rows, isCancelled);
    std::ranges::stable_sort(rows, std::ranges::greater(),
                             [](const Row& row) { return row.item.estimatedBytes; });
    return rows;
}

} // namespace orbel

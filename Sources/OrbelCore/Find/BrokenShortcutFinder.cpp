#include "Find/BrokenShortcutFinder.h"

#include "Find/LinkProber.h"
#include "Find/PlaceMarks.h"
#include "Find/ProgramLinks.h"
#include "Platform/AliasFile.h"
#include "Platform/Bookmarks.h"
#include "Platform/Launchers.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/SafetyPolicy.h"
#include "Util/PathText.h"
#include "Util/ReadLink.h"
#include "Util/Utf8.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace orbel {

namespace {

using Kind = BrokenShortcutFinder::Kind;
using State = BrokenShortcutFinder::State;

/// What was found out about one shortcut that does not lead anywhere.
struct Finding {
    Kind kind = Kind::symbolicLink;
    State state = State::missing;
    std::string target{};
    std::string reason{};      ///< why it is blocked; empty where the policy decides
    bool mayPreselect = false; ///< the target is surely gone
};

Finding finding(Kind kind, const TargetReport& report, std::string target) {
    if (report.state == TargetState::missing)
        return {.kind = kind, .target = std::move(target)};
    return {.kind = kind,
            .state = State::unknown,
            .target = std::move(target),
            .reason = "Not known whether its target is there: " + report.reason};
}

/// Looks into one shortcut after another.
class Inspector {
public:
    /// `root`: of the search.
    Inspector(const std::string& home, const std::string& root)
        : home_(home),
          launcherFolders_(platform::userLauncherFolders(home)),
          prober_(std::array{home, root}) {
        launcherFolders_.push_back(joinedPath(home, "Desktop"));
    }

    /// What is wrong with the node; absent when nothing is, or when it is no shortcut.
    std::optional<Finding> lookInto(const FileTree& tree, NodeIndex node, PlaceMarks marks) {
        const auto path = [&] { return tree.path(node, PathCanonicalizer::shared()); };
        if (tree.flags(node).contains(NodeFlags::symlink))
            return brokenLink(path(), marks.intersects(PlaceMarks::managed));
        if (tree.isAlias(node))
            return brokenAlias(path());
        const std::string_view name = node == 0 ? tree.rootPath : tree.nameBytes(node);
        if (!tree.isFolder(node) && name.ends_with(".desktop"))
            return brokenLauncher(path());
        return std::nullopt;
    }

    /// What is wrong with where a bookmark leads.
    std::optional<Finding> lookInto(const platform::Bookmark& bookmark) {
        const auto report = prober_.probePath(bookmark.target, bookmark.list);
        if (report.state == TargetState::present)
            return std::nullopt;
        auto found = finding(Kind::bookmark, report, bookmark.target);
        if (found.state == State::missing)
            found.reason = "Is a bookmark in the file manager; edit it there";
        return found;
    }

private:
    std::optional<Finding> brokenLink(const std::string& path, bool isManaged) {
        auto text = linkText(path);
        if (!text)
            return std::nullopt;
        const auto report = prober_.probe(path);
        if (report.state == TargetState::present)
            return std::nullopt;
        if (isManaged || isProgramsOwnLink(path, *text))
            return Finding{.state = State::intentional,
                           .target = *std::move(text),
                           .reason = "Made by a program on purpose"};
        return finding(Kind::symbolicLink, report, *std::move(text));
    }

    std::optional<Finding> brokenAlias(const std::string& path) {
        const auto alias = platform::aliasTarget(path);
        if (alias && alias->isFound)
            return std::nullopt;
        if (!alias || !alias->lastPath)
            return finding(Kind::alias, {.reason = "could not be read"}, "");
        auto report = prober_.probePath(*alias->lastPath, path);
        if (report.state == TargetState::present)
            report = {.state = TargetState::unknown, .reason = "another object is in its place"};
        return finding(Kind::alias, report, *alias->lastPath);
    }

    /// In doubt a launcher is not broken: it may start its program in a way that nothing is known of here.
    std::optional<Finding> brokenLauncher(const std::string& path) const {
        const auto holdsIt = [&](const std::string& folder) { return isPathInside(path, folder); };
        if (std::ranges::none_of(launcherFolders_, holdsIt))
            return std::nullopt;
        auto target = platform::launcherTarget(path, home_);
        if (!target || target->state != platform::LauncherTarget::State::missing)
            return std::nullopt;
        const bool isAutostart = lastPathComponent(parentPath(path)) == "autostart";
        // A program that is known by its name alone may lie in a folder that was not searched.
        const bool isPath = target->program.starts_with('/');
        return Finding{.kind = isAutostart ? Kind::autostart : Kind::launcher,
                       .target = std::move(target->program),
                       .mayPreselect = isPath};
    }

    std::string home_;
    std::vector<std::string> launcherFolders_;
    LinkProber prober_;
};

/// Those of the lists that lie in the tree.
void addBookmarks(const FileTree& tree, const std::vector<PlaceMarks>& marks, Inspector& inspector,
                  const std::string& home, std::vector<BrokenShortcutFinder::Row>& rows) {
    for (const auto& bookmark : platform::fileManagerBookmarks(home)) {
        const auto list = tree.index(bookmark.list, PathCanonicalizer::shared());
        if (!list || marks[*list].intersects(PlaceMarks::gone) || tree.isExcluded(*list))
            continue;
        auto found = inspector.lookInto(bookmark);
        if (!found)
            continue;
        DeletionItem item{.id = std::string(rawValue(DeletionModule::brokenShortcuts)) + ":" + bookmark.list
                                + "#" + bookmark.target,
                          .module = DeletionModule::brokenShortcuts,
                          .title = lossyUtf8(lastPathComponent(bookmark.target)),
                          .detail = bookmark.list,
                          .path = bookmark.list,
                          .scanStamp = FileStamp::of(bookmark.list).value_or(FileStamp()),
                          .blockedReason = std::move(found->reason)};
        rows.push_back({.index = *list,
                        .item = std::move(item),
                        .kind = found->kind,
                        .state = found->state,
                        .target = std::move(found->target)});
    }
}

} // namespace

std::vector<BrokenShortcutFinder::Row> BrokenShortcutFinder::run(const FileTree& tree,
                                                                 const SafetyPolicy& policy, Date now,
                                                                 const IsCancelled& isCancelled) const {
    constexpr PlaceMarks leftAlone = PlaceMarks::gone | PlaceMarks::whole | PlaceMarks::outsideHome;
    const auto marks = placeMarks(tree, policy);
    Inspector inspector(policy.homePath(), tree.rootPath);
    std::vector<Row> rows;
    for (NodeIndex i = 0; i < tree.count(); ++i) {
        if (marks[i].intersects(leftAlone) || tree.isExcluded(i))
            continue;
        auto found = inspector.lookInto(tree, i, marks[i]);
        if (!found)
            continue;
        if (isCancelled && isCancelled())
            break;
        auto reason = found->reason.empty() ? std::nullopt : std::optional(std::move(found->reason));
        auto lastPath = found->target.empty() ? std::nullopt : std::optional(found->target);
        auto item = DeletionItem::brokenShortcut(tree, i, policy, std::move(reason), std::nullopt,
                                                 std::move(lastPath));
        if (!item)
            continue;
        const std::chrono::duration<double> age = now - Date(tree.modified(i));
        item->preselected = found->mayPreselect && item->isSelectable() && age.count() >= settledFor;
        rows.push_back({.index = i,
                        .item = *std::move(item),
                        .kind = found->kind,
                        .state = found->state,
                        .target = std::move(found->target)});
    }
    if (!isCancelled || !isCancelled())
        addBookmarks(tree, marks, inspector, policy.homePath(), rows);
    std::ranges::sort(rows, {}, [](const Row& row) { return std::tie(row.item.path, row.item.id); });
    return rows;
}

} // namespace orbel

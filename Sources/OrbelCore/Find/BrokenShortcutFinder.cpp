#include "Find/BrokenShortcutFinder.h"

#include "Find/LinkProber.h"
#include "Find/PlaceMarks.h"
#include "Find/ProgramLinks.h"
#include "Platform/AliasFile.h"
#include "Safety/PathCanonicalizer.h"
#include "Safety/SafetyPolicy.h"

#include <algorithm>
#include <chrono>
#include <optional>
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
    std::string reason{};      ///< of a state other than missing: why it is blocked
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

std::optional<Finding> brokenLink(const std::string& path, bool isManaged, LinkProber& prober) {
    auto text = LinkProber::textOf(path);
    if (!text)
        return std::nullopt;
    const auto report = prober.probe(path);
    if (report.state == TargetState::present)
        return std::nullopt;
    if (isManaged || isProgramsOwnLink(path, *text))
        return Finding{.state = State::intentional,
                       .target = *std::move(text),
                       .reason = "Made by a program on purpose"};
    return finding(Kind::symbolicLink, report, *std::move(text));
}

std::optional<Finding> brokenAlias(const std::string& path, LinkProber& prober) {
    const auto alias = platform::aliasTarget(path);
    if (alias && alias->isFound)
        return std::nullopt;
    if (!alias || !alias->lastPath)
        return finding(Kind::alias, {.reason = "Could not be read"}, "");
    auto report = prober.probePath(*alias->lastPath);
    if (report.state == TargetState::present)
        report = {.state = TargetState::unknown, .reason = "Another object is in its place"};
    auto found = finding(Kind::alias, report, *alias->lastPath);
    found.mayPreselect = true;
    return found;
}

} // namespace

std::vector<BrokenShortcutFinder::Row> BrokenShortcutFinder::run(const FileTree& tree,
                                                                 const SafetyPolicy& policy, Date now,
                                                                 const IsCancelled& isCancelled) const {
    constexpr PlaceMarks leftAlone = PlaceMarks::gone | PlaceMarks::whole | PlaceMarks::system;
    const auto marks = placeMarks(tree, policy);
    LinkProber prober;
    const auto lookInto = [&](NodeIndex node) -> std::optional<Finding> {
        const auto path = [&] { return tree.path(node, PathCanonicalizer::shared()); };
        if (tree.flags(node).contains(NodeFlags::symlink))
            return brokenLink(path(), marks[node].intersects(PlaceMarks::managed), prober);
        if (tree.isAlias(node))
            return brokenAlias(path(), prober);
        return std::nullopt;
    };

    std::vector<Row> rows;
    for (NodeIndex i = 0; i < tree.count(); ++i) {
        if (marks[i].intersects(leftAlone))
            continue;
        auto found = lookInto(i);
        if (!found)
            continue;
        if (isCancelled && isCancelled())
            break;
        auto reason = found->state == State::missing ? std::nullopt : std::optional(std::move(found->reason));
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
    std::ranges::sort(rows, {}, [](const Row& row) -> const std::string& { return row.item.path; });
    return rows;
}

} // namespace orbel

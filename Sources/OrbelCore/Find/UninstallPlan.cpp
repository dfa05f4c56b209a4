#include "Find/UninstallPlan.h"

#include "Platform/FileStatus.h"
#include "Safety/RealPath.h"
#include "Safety/SafetyPolicy.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace orbel {

namespace {

using Status = InstalledApp::Status;

/// Whether the program is the application, or lies in it.
bool isOf(const InstalledApp& app, const std::string& program) {
    return RealPath::isInside(program, app.path)
           || std::ranges::find(app.executables, program) != app.executables.end();
}

/// Makes the items of one application.
class ItemBuilder {
public:
    ItemBuilder(const InstalledApp& app, const SafetyPolicy& policy, const UninstallPlan::Measure& measure,
                bool isRunning)
        : app_(app), policy_(policy), measure_(measure), isRunning_(isRunning) {}

    DeletionItem ofApp(std::span<const InstalledApp> others) const {
        auto item = LeftoverItem::at(app_.path, {});
        item.title = app_.name;
        item.root = policy_.isApplication(app_.path) ? AllowedRoot::applicationBundle : AllowedRoot::homeItem;
        if (app_.status != Status::removable) {
            item.blockedReason = app_.reason.empty() ? "Cannot be removed from here" : app_.reason;
            if (!app_.command.empty())
                item.note = app_.command;
            return item;
        }
        if (item.scanStamp.isDirectory)
            item.note = "The whole folder goes with it";
        item.blockedReason = quitReason();
        if (!item.blockedReason)
            item.blockedReason = needReason(others);
        if (!item.blockedReason)
            check(item);
        return item;
    }

    DeletionItem ofOwnFile(const std::string& path) const {
        const auto status = platform::fileStatus(path);
        const bool isLink = status && status->type == platform::FileType::symbolicLink;
        auto item = LeftoverItem::at(path, isLink                       ? "A link into it"
                                           : path.ends_with(".desktop") ? "Its launcher"
                                                                        : "Its icon");
        item.blockedReason = quitReason();
        if (!item.blockedReason)
            check(item);
        return item;
    }

    DeletionItem ofLeftover(const Leftover& leftover) const {
        auto item = LeftoverItem::at(leftover.path, leftover.evidence);
        if (app_.status != Status::removable)
            item.note = app_.name + " is still installed"
                        + (app_.command.empty() ? "" : ": " + app_.command + " removes it");
        item.blockedReason = quitReason();
        if (!item.blockedReason)
            check(item);
        item.preselected = item.isSelectable() && app_.status == Status::removable && leftover.isCache
                           && leftover.certainty == Leftover::Certainty::certain;
        return item;
    }

private:
    std::optional<std::string> quitReason() const {
        return isRunning_ ? std::optional(app_.name + " is running: quit it first") : std::nullopt;
    }

    /// Whether another application would lose what it runs.
    std::optional<std::string> needReason(std::span<const InstalledApp> others) const {
        for (const auto& other : others)
            if (RealPath::isInside(other.path, app_.path)
                || std::ranges::any_of(other.executables, [&](const std::string& program) {
                       return RealPath::isInside(program, app_.path);
                   }))
                return "Holds what " + other.name + " runs";
        return std::nullopt;
    }

    void check(DeletionItem& item) const { LeftoverItem::check(item, policy_, measure_); }

    const InstalledApp& app_;
    const SafetyPolicy& policy_;
    const UninstallPlan::Measure& measure_;
    bool isRunning_;
};

} // namespace

std::vector<platform::RunningProgram>
UninstallPlan::runningOf(const InstalledApp& app, std::vector<platform::RunningProgram> programs) {
    std::erase_if(programs, [&](const platform::RunningProgram& program) {
        return std::ranges::none_of(program.paths, [&](const std::string& path) { return isOf(app, path); });
    });
    return programs;
}

UninstallPlan UninstallPlan::make(const InstalledApp& app, std::span<const InstalledApp> others,
                                  const LeftoverMatcher& matcher, const SafetyPolicy& policy,
                                  const Measure& measure, const Running& running) {
    UninstallPlan plan{.app = app,
                       .items = {},
                       .ownItems = 1,
                       .systemLeftovers = {},
                       .runningProcesses = runningOf(app, running ? running() : platform::runningPrograms())};
    const ItemBuilder items(app, policy, measure, !plan.runningProcesses.empty());
    plan.items.push_back(items.ofApp(others));
    // What a part of the system keeps is no leftover as long as the system is there.
    if (app.status == Status::system)
        return plan;
    const auto isShared = [&](const std::string& path) {
        return std::ranges::any_of(others, [&](const InstalledApp& other) {
            return std::ranges::find(other.ownFiles, path) != other.ownFiles.end();
        });
    };
    for (const auto& path : app.ownFiles)
        if (!isShared(path))
            plan.items.push_back(items.ofOwnFile(path));
    plan.ownItems = plan.items.size();
    for (const auto& leftover : matcher.leftovers(app, others))
        if (!isShared(leftover.path))
            plan.items.push_back(items.ofLeftover(leftover));
    plan.systemLeftovers = matcher.systemLeftovers(app, others);
    return plan;
}

} // namespace orbel

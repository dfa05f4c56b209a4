#include "AppModel/ChangesFlow.h"

#include "Models/ByteFigure.h"
#include "Models/ChangeTable.h"
#include "Models/Wording.h"

#include <algorithm>
#include <array>

namespace orbel {

namespace {

constexpr std::array changeChoices{ChangeKind::grew, ChangeKind::shrank, ChangeKind::came, ChangeKind::went,
                                   ChangeKind::moved};

} // namespace

ChangesFlow::ChangesFlow(const AppEnvironment& environment, CompareFlow& compare)
    : environment_(environment), compare_(compare), model_(environment.home) {
    connect(&compare, &CompareFlow::comparedChanged, this, &ChangesFlow::follow);
    connect(&compare, &CompareFlow::changed, this, &ChangesFlow::changed);
}

void ChangesFlow::setShown(bool shown) {
    if (shown == isShown_)
        return;
    isShown_ = shown;
    compare_.need(CompareFlow::Need::list, shown);
    follow();
}

void ChangesFlow::follow() {
    if (isShown_ && compare_.compared()) {
        arrange();
        return;
    }
    arranging_.drop();
    scans_.reset();
    model_.show(nullptr, {});
    Q_EMIT changed();
}

void ChangesFlow::arrange() {
    arranging_.run(
        [scans = compare_.compared(), arrangement = arrangement_,
         home = environment_.home](const LatestJob::Run& run) {
            auto order = arranged(*scans, arrangement, home, [&] { return run.isCancelled(); });
            return std::pair(scans, std::move(order));
        },
        [this](std::pair<std::shared_ptr<const ComparedScans>, ChangeOrder> answer) {
            scans_ = answer.first;
            model_.show(std::move(answer.first), std::move(answer.second));
            Q_EMIT changed();
        });
    Q_EMIT changed();
}

void ChangesFlow::setArrangement(ChangeArrangement arrangement) {
    if (arrangement == arrangement_)
        return;
    arrangement_ = std::move(arrangement);
    follow();
}

void ChangesFlow::sortBy(int column) {
    const auto wanted = static_cast<ChangeArrangement::Column>(column);
    auto arrangement = arrangement_;
    // Words from A on; of figures, the most first.
    arrangement.isDescending = wanted == arrangement_.column ? !arrangement_.isDescending : column >= Before;
    arrangement.column = wanted;
    setArrangement(std::move(arrangement));
}

void ChangesFlow::clearFilter() {
    setArrangement({.column = arrangement_.column,
                    .isDescending = arrangement_.isDescending,
                    .kind = std::nullopt,
                    .text = {}});
}

QString ChangesFlow::shownCount() const {
    if (!scans_)
        return {};
    const auto all = scans_->comparison.changes.size();
    const auto shown = static_cast<std::size_t>(model_.rowCount());
    const auto words = countOf(all, tr("change"), tr("changes"));
    return shown == all ? words : tr("%1 of %2").arg(countText(shown), words);
}

QString ChangesFlow::shownNet() const {
    return scans_ ? tr("%1 in all").arg(differenceText(model_.net())) : QString();
}

QStringList ChangesFlow::kinds() const {
    QStringList words{tr("all")};
    for (const auto kind : changeChoices)
        words << changeTitle(nodeChangeOf(kind));
    return words;
}

int ChangesFlow::kind() const {
    return arrangement_.kind ? static_cast<int>(std::ranges::find(changeChoices, *arrangement_.kind)
                                                - changeChoices.begin())
                                   + 1
                             : 0;
}

void ChangesFlow::setKind(int choice) {
    auto arrangement = arrangement_;
    arrangement.kind =
        choice == 0 ? std::nullopt : std::optional(changeChoices.at(static_cast<std::size_t>(choice - 1)));
    setArrangement(std::move(arrangement));
}

QStringList ChangesFlow::itemChoices() const {
    return {tr("files and folders"), tr("folders"), tr("files")};
}

void ChangesFlow::setItems(int choice) {
    auto arrangement = arrangement_;
    arrangement.items = static_cast<ChangeArrangement::Items>(choice);
    setArrangement(std::move(arrangement));
}

QString ChangesFlow::text() const {
    return QString::fromStdString(arrangement_.text);
}

void ChangesFlow::setText(const QString& text) {
    auto arrangement = arrangement_;
    arrangement.text = text.trimmed().toStdString();
    setArrangement(std::move(arrangement));
}

} // namespace orbel

#include "Models/MoveReport.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

MoveReport::MoveReport(QObject* parent) : QObject(parent) {}

void MoveReport::set(DeletionReport report, const std::vector<TickedItem>& items, const QString& origin,
                     std::string home, std::chrono::system_clock::time_point now) {
    report_ = std::move(report);
    home_ = std::move(home);
    scope_ = tr("%1 · %2").arg(origin, whenText(report_.finishedAt, now));
    putBackOf_.clear();
    kindOf_.clear();
    for (const auto& ticked : items)
        kindOf_[ticked.item.path] = static_cast<int>(ticked.kind);
    std::vector<ReportItem> rows;
    rows.reserve(report_.skipped.size());
    for (const auto& item : report_.skipped)
        rows.push_back({.title = textOf(item.title),
                        .path = textOf(tildePath(item.path, home_)),
                        .kind = kindOf_[item.path],
                        .size = {},
                        .note = textOf(item.reason),
                        .stage = QStringLiteral("skipped")});
    skipped_.setRows(std::move(rows));
    showMoved();
    Q_EMIT changed();
}

void MoveReport::takePutBack(const std::vector<PutBackResult>& results) {
    for (const auto& result : results)
        putBackOf_[result.path] = result;
    showMoved();
    Q_EMIT changed();
}

void MoveReport::showMoved() {
    std::vector<ReportItem> rows;
    for (const auto& item : report_.moved) {
        const auto attempt = putBackOf_.find(item.path);
        const bool isTried = attempt != putBackOf_.end();
        const bool isBack = isTried && attempt->second.restored;
        rows.push_back({.title = textOf(item.title),
                        .path = textOf(tildePath(item.path, home_)),
                        .kind = kindOf_[item.path],
                        .size = ByteFigure(item.bytes).text(),
                        .note = textOf(isTried ? attempt->second.explanation() : item.note.value_or("")),
                        .stage = isBack    ? QStringLiteral("putBack")
                                 : isTried ? QStringLiteral("notPutBack")
                                           : QStringLiteral("moved")});
    }
    moved_.setRows(std::move(rows));
}

std::size_t MoveReport::restored() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(report_.moved, [this](const DeletionReport::Moved& item) {
            const auto attempt = putBackOf_.find(item.path);
            return attempt != putBackOf_.end() && attempt->second.restored;
        }));
}

bool MoveReport::canPutBack() const {
    return restored() < report_.moved.size();
}

QString MoveReport::headline() const {
    if (putBackOf_.empty())
        return ByteFigure(report_.movedBytes()).in(textOf(report_.headline()));
    const auto all = countOf(report_.moved.size(), tr("item"), tr("items"));
    if (restored() == 0)
        return tr("Nothing of %1 was put back.").arg(all);
    return canPutBack() ? tr("Put back %1 of %2.").arg(countText(restored()), all)
                        : tr("Put back %1.").arg(all);
}

QString MoveReport::note() const {
    if (putBackOf_.empty())
        return textOf(DeletionReport::trashNote);
    return canPutBack() ? tr("Each item that did not come back says why.")
                        : tr("Everything that was moved is where it was.");
}

QString MoveReport::movedTitle() const {
    return (putBackOf_.empty() || canPutBack() ? tr("Moved to Trash (%1)") : tr("Put back (%1)"))
        .arg(countText(report_.moved.size()));
}

QStringList MoveReport::stops() const {
    QStringList stops;
    if (report_.stoppedForMismatch)
        stops << tr("Stopped: an item in the Trash did not match the approved item.");
    if (report_.journalFailed)
        stops << tr("Stopped: the journal could not be written.");
    if (report_.journalFailure)
        stops << tr("Journal: %1").arg(textOf(*report_.journalFailure));
    if (report_.cancelled)
        stops << tr("Cancelled before all items ran.");
    return stops;
}

QString MoveReport::movedSize() const {
    return ByteFigure(report_.movedBytes()).text();
}

QString MoveReport::unchecked() const {
    if (report_.uncheckedProcesses < 1)
        return {};
    return tr("Could not check %1 for open files.")
        .arg(countOf(static_cast<std::uint64_t>(report_.uncheckedProcesses), tr("system process"),
                     tr("system processes")));
}

QString MoveReport::times() const {
    return tr("Session %1 – %2").arg(clockText(report_.startedAt), clockText(report_.finishedAt));
}

} // namespace orbel

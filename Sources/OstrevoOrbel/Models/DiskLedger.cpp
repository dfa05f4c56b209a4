#include "Models/DiskLedger.h"

#include "Models/Wording.h"

#include <cstdlib>
#include <numeric>
#include <QStringList>

namespace orbel {

void DiskLedger::setFigures(Figures figures) {
    if (figures == figures_)
        return;
    figures_ = std::move(figures);
    measuredBytes_ = figures_.measured
                         ? std::accumulate(figures_.measured->begin(), figures_.measured->end(), quint64{0})
                         : 0;
    settle();
    updateSegments();
    Q_EMIT changed();
}

void DiskLedger::settle() {
    uncounted_ = since_ = 0;
    if (!isKnown())
        return;
    const auto now = static_cast<std::int64_t>(volume().used) - static_cast<std::int64_t>(measuredBytes_)
                     - static_cast<std::int64_t>(figures_.trash);
    const auto then = figures_.uncounted.value_or(now);
    // A disk is never quite still: what cannot be seen in the bar gets no term.
    const auto unseen = static_cast<std::int64_t>(volume().total / 1000);
    const bool isUnseen = std::abs(now - then) < unseen && (now < 0) == (then < 0);
    uncounted_ = isUnseen ? now : then;
    since_ = now - uncounted_;
}

QString DiskLedger::summary() const {
    if (!isKnown())
        return {};
    QStringList terms{QStringLiteral("Measured ") + measured().text()};
    const auto add = [&](const QString& name, ByteFigure figure) { terms << name + figure.text(); };
    if (trash().bytes() > 0)
        add(QStringLiteral("in the Trash "), trash());
    if (shared().bytes() > 0)
        add(QStringLiteral("shared minus "), shared());
    else
        add(QStringLiteral("not measured "), notMeasured());
    if (writtenSince().bytes() > 0)
        add(QStringLiteral("written since "), writtenSince());
    if (freedSince().bytes() > 0)
        add(QStringLiteral("freed since minus "), freedSince());
    add(QStringLiteral("reserved "), reserved());
    add(QStringLiteral("free "), free());
    add(QStringLiteral("total "), total());
    return terms.join(QStringLiteral(", "));
}

void DiskLedger::updateSegments() {
    std::vector<LedgerSegment> segments;
    const auto add = [&](Part part, int kind, const QString& title, quint64 bytes) {
        if (bytes > 0)
            segments.push_back({.part = part, .kind = kind, .title = title, .bytes = bytes});
    };
    if (figures_.measured) {
        for (const ContentKind kind : shownContentKinds) {
            const auto raw = static_cast<std::uint8_t>(kind);
            add(Kind, raw, textOf(title(kind)), figures_.measured->at(raw));
        }
    }
    add(Trash, -1, tr("In the Trash"), trash().bytes());
    add(NotMeasured, -1, tr("Not measured"), notMeasured().bytes() + writtenSince().bytes());
    add(Reserved, -1, tr("Reserved"), reserved().bytes());
    add(Free, -1, tr("Free"), free().bytes());
    // Shared blocks are measured more than once: the bar is then longer than the volume is large.
    quint64 whole = 0;
    for (const auto& segment : segments)
        whole += segment.bytes;
    for (auto& segment : segments)
        segment.fraction = fractionOf(segment.bytes, whole);
    segments_.setRows(std::move(segments));
}

} // namespace orbel

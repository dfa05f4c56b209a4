#include "Models/DiskLedger.h"

#include "Models/Wording.h"

#include <array>
#include <numeric>

namespace orbel {

namespace {

/// The order of the bar. Folders occupy something only where a package has no kind of its own.
constexpr std::array barOrder{FileKind::video,   FileKind::virtualMachine, FileKind::diskImage,
                              FileKind::archive, FileKind::document,       FileKind::application,
                              FileKind::folder,  FileKind::other};

} // namespace

DiskLedger::DiskLedger(QObject* parent) : QObject(parent), segments_(new SegmentsModel(this)) {}

void DiskLedger::setFigures(Figures figures) {
    if (figures == figures_)
        return;
    figures_ = std::move(figures);
    measuredBytes_ = figures_.measured
                         ? std::accumulate(figures_.measured->begin(), figures_.measured->end(), quint64{0})
                         : 0;
    updateSegments();
    Q_EMIT changed();
}

ByteFigure DiskLedger::notMeasured() const {
    return ByteFigure(volume().used > measuredBytes_ ? volume().used - measuredBytes_ : 0);
}

ByteFigure DiskLedger::shared() const {
    const bool isMore = isKnown() && measuredBytes_ > volume().used;
    return ByteFigure(isMore ? measuredBytes_ - volume().used : 0);
}

QString DiskLedger::summary() const {
    if (!isKnown())
        return {};
    const auto second = shared().bytes() > 0 ? QStringLiteral("shared minus ") + shared().text()
                                             : QStringLiteral("not measured ") + notMeasured().text();
    return QStringLiteral("Measured %1, %2, reserved %3, free %4, total %5")
        .arg(measured().text(), second, reserved().text(), free().text(), total().text());
}

void DiskLedger::updateSegments() {
    std::vector<SegmentsModel::Segment> segments;
    const auto add = [&](SegmentsModel::Part part, int kind, const QString& title, quint64 bytes) {
        if (bytes > 0)
            segments.push_back({.part = part, .kind = kind, .title = title, .bytes = bytes});
    };
    if (figures_.measured) {
        for (const FileKind kind : barOrder) {
            const auto raw = static_cast<std::uint8_t>(kind);
            add(SegmentsModel::Part::Kind, raw, textOf(title(kind)), figures_.measured->at(raw));
        }
    }
    add(SegmentsModel::Part::NotMeasured, -1, tr("Not measured"), notMeasured().bytes());
    add(SegmentsModel::Part::Reserved, -1, tr("Reserved"), reserved().bytes());
    add(SegmentsModel::Part::Free, -1, tr("Free"), free().bytes());
    // Shared blocks are measured more than once: the bar is then longer than the volume is large.
    double whole = 0;
    for (const auto& segment : segments)
        whole += static_cast<double>(segment.bytes);
    for (auto& segment : segments)
        segment.fraction = static_cast<double>(segment.bytes) / whole;
    segments_->setSegments(std::move(segments));
}

} // namespace orbel

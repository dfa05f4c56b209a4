#include "Models/GrowthModel.h"

#include <QDateTime>
#include <QLocale>

namespace orbel {

namespace {

QDateTime localTime(auto point) {
    return QDateTime::fromSecsSinceEpoch(
        std::chrono::floor<std::chrono::seconds>(point).time_since_epoch().count());
}

QString sinceText(Date date, std::chrono::system_clock::time_point now) {
    const auto then = localTime(date);
    const auto today = localTime(now).date();
    if (then.date() == today)
        return GrowthModel::tr("since today at %1").arg(then.toString(QStringLiteral("HH:mm")));
    const auto form =
        then.date().year() == today.year() ? QStringLiteral("d MMMM") : QStringLiteral("d MMMM yyyy");
    return GrowthModel::tr("since %1").arg(QLocale(QLocale::English).toString(then.date(), form));
}

} // namespace

void GrowthModel::set(Content content, std::chrono::system_clock::time_point now) {
    folders_.setRows(std::move(content.folders));
    since_ = content.since ? sinceText(*content.since, now) : QString();
    failure_ = std::move(content.failure);
    Q_EMIT changed();
}

void GrowthModel::follow(const FileTree& tree, const PathCanonicalizer& canonicalizer) {
    auto folders = folders_.rows();
    std::erase_if(folders, [&](GrowthFolder& folder) {
        const auto node = tree.index(folder.place, canonicalizer);
        folder.node = node.value_or(0);
        return !node;
    });
    folders_.setRows(std::move(folders));
}

QString GrowthModel::statement() const {
    return since_.isEmpty() ? tr("No comparison yet") : tr("Nothing grew");
}

QString GrowthModel::sentence() const {
    return since_.isEmpty() ? tr("Growth compares two complete scans of the same folder.")
                            : tr("No folder takes 1 MB more than it did.");
}

} // namespace orbel

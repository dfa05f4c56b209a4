#include "Models/GrowthModel.h"

#include "Models/ByteFigure.h"

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
    beginResetModel();
    content_ = std::move(content);
    since_ = content_.since ? sinceText(*content_.since, now) : QString();
    endResetModel();
    Q_EMIT changed();
}

void GrowthModel::follow(const FileTree& tree, const PathCanonicalizer& canonicalizer) {
    if (content_.folders.empty())
        return;
    beginResetModel();
    std::erase_if(content_.folders, [&](Folder& folder) {
        const auto node = tree.index(folder.place, canonicalizer);
        folder.node = node.value_or(0);
        return !node;
    });
    endResetModel();
    Q_EMIT changed();
}

QString GrowthModel::statement() const {
    return content_.since ? tr("Nothing grew") : tr("No comparison yet");
}

QString GrowthModel::sentence() const {
    return content_.since ? tr("No folder takes 1 MB more than it did.")
                          : tr("Growth compares two complete scans of the same folder.");
}

int GrowthModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(content_.folders.size());
}

QVariant GrowthModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& folder = content_.folders[static_cast<std::size_t>(index.row())];
    switch (role) {
    case NodeRole:
        return folder.node;
    case PathRole:
        return folder.path;
    case KindRole:
        return folder.kind;
    case BytesRole:
        return folder.bytes;
    case SizeRole:
        return ByteFigure(folder.bytes).text();
    default:
        return {};
    }
}

QHash<int, QByteArray> GrowthModel::roleNames() const {
    return {
        {NodeRole, "node"}, {PathRole, "path"}, {KindRole, "kind"}, {BytesRole, "bytes"}, {SizeRole, "size"}};
}

} // namespace orbel

#include "Models/LeftoversModel.h"

#include "Models/ByteFigure.h"
#include "Models/ItemKey.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <utility>

namespace orbel {

namespace {

/// What an item's detail says behind its path.
std::string_view evidenceOf(const DeletionItem& item) {
    constexpr std::string_view between = " · ";
    std::string_view detail = item.detail;
    if (detail.starts_with(item.path))
        detail.remove_prefix(item.path.size());
    if (detail.starts_with(between))
        detail.remove_prefix(between.size());
    return detail;
}

} // namespace

LeftoversModel::LeftoversModel(std::string home, const Ticks& ticks, QObject* parent)
    : QAbstractListModel(parent), home_(std::move(home)), ticks_(ticks) {
    connect(&ticks, &Ticks::changed, this, [this] {
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0), index(rowCount() - 1), {TickRole});
    });
}

void LeftoversModel::set(std::vector<TickedItem> items, std::size_t ownItems,
                         const std::vector<Leftover>& forAdministrators, const QString& noneText) {
    beginResetModel();
    rows_.clear();
    for (auto& ticked : items)
        rows_.push_back({.section = rows_.size() < ownItems ? Section::app : Section::leftovers,
                         .ticked = std::move(ticked),
                         .words = {}});
    if (!rows_.empty() && rows_.size() <= ownItems)
        rows_.push_back({.section = Section::leftovers, .ticked = {}, .words = noneText});
    for (const auto& leftover : forAdministrators)
        rows_.push_back({.section = Section::shared,
                         .ticked = {.item = {.id = leftover.path,
                                             .title = {},
                                             .detail = leftover.path + " · " + leftover.evidence,
                                             .path = leftover.path,
                                             .scanStamp = {},
                                             .blockedReason = "An administrator would have to remove it"},
                                    .kind = FileKind::folder,
                                    .kindName = {}},
                         .words = {}});
    endResetModel();
}

void LeftoversModel::remove(const std::vector<DeletionItem>& items) {
    for (const auto& item : items) {
        const auto row = std::ranges::find_if(rows_, [&](const Row& each) {
            return each.words.isEmpty() && each.ticked.item.path == item.path;
        });
        if (row == rows_.end())
            continue;
        const int number = static_cast<int>(row - rows_.begin());
        beginRemoveRows({}, number, number);
        rows_.erase(row);
        endRemoveRows();
    }
}

const TickedItem* LeftoversModel::itemAt(int row) const {
    if (row < 0 || row >= rowCount())
        return nullptr;
    const auto& each = rows_[static_cast<std::size_t>(row)];
    return each.words.isEmpty() && each.section != Section::shared ? &each.ticked : nullptr;
}

std::size_t LeftoversModel::positionOf(const std::string& path) const {
    const auto row = std::ranges::find(rows_, path, [](const Row& each) { return each.ticked.item.path; });
    return static_cast<std::size_t>(row - rows_.begin());
}

QString LeftoversModel::sectionName(Section section) {
    switch (section) {
    case Section::app:
        return QStringLiteral("app");
    case Section::leftovers:
        return QStringLiteral("leftovers");
    case Section::shared:
        break;
    }
    return QStringLiteral("shared");
}

QString LeftoversModel::titleOf(const Row& row) const {
    if (!row.words.isEmpty())
        return row.words;
    const auto& item = row.ticked.item;
    const bool isApp = row.section == Section::app && evidenceOf(item).empty();
    return textOf(isApp ? item.title : tildePath(item.path, home_));
}

QString LeftoversModel::detailOf(const Row& row) const {
    if (!row.words.isEmpty())
        return {};
    const auto& item = row.ticked.item;
    const auto evidence = evidenceOf(item);
    return textOf(evidence.empty() ? tildePath(item.path, home_) : std::string(evidence));
}

/// What it is itself, whatever most of its content is.
FileKind LeftoversModel::kindOf(const Row& row, int number) {
    if (number == 0)
        return FileKind::application;
    return row.ticked.item.scanStamp.isDirectory ? FileKind::folder : row.ticked.kind;
}

QString LeftoversModel::refusalOf(const Row& row) {
    return textOf(row.ticked.item.blockedReason.value_or(""));
}

int LeftoversModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant LeftoversModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& row = rows_[static_cast<std::size_t>(index.row())];
    const auto& item = row.ticked.item;
    const bool isListed = row.words.isEmpty();
    // What may not move is not measured.
    const bool isMeasured = isListed && (item.isSelectable() || item.estimatedBytes > 0);
    switch (role) {
    case SectionRole:
        return sectionName(row.section);
    case keyRole:
        return keyOf(item.path);
    case Qt::DisplayRole:
        return textOf(lastPathComponent(item.path));
    case PathRole:
        return textOf(tildePath(item.path, home_));
    case TitleRole:
        return titleOf(row);
    case DetailRole:
        return detailOf(row);
    case KindRole:
        return static_cast<int>(kindOf(row, index.row()));
    case SizeRole:
        return isMeasured ? ByteFigure(item.estimatedBytes).text()
               : isListed ? QStringLiteral("—")
                          : QString();
    case TickRole:
        return static_cast<int>(isListed && ticks_.contains(item.id) ? Qt::Checked : Qt::Unchecked);
    case RefusalRole:
        return refusalOf(row);
    case NoteRole:
        return textOf(item.note.value_or(""));
    case ListedRole:
        return isListed;
    default:
        return {};
    }
}

QHash<int, QByteArray> LeftoversModel::roleNames() const {
    return {{keyRole, "key"},         {PathRole, "path"}, {SectionRole, "section"}, {TitleRole, "title"},
            {DetailRole, "detail"},   {KindRole, "kind"}, {SizeRole, "size"},       {TickRole, "tick"},
            {RefusalRole, "refusal"}, {NoteRole, "note"}, {ListedRole, "listed"}};
}

} // namespace orbel

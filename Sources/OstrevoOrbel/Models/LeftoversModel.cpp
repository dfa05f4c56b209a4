#include "Models/LeftoversModel.h"

#include "Find/LeftoverItem.h"
#include "Models/ByteFigure.h"
#include "Models/ItemKey.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <utility>

namespace orbel {

LeftoversModel::LeftoversModel(std::string home, const Ticks& ticks, QObject* parent)
    : RoleList(parent), home_(std::move(home)), ticks_(ticks) {
    connect(&ticks, &Ticks::changed, this, &LeftoversModel::notifyRows);
    const auto of = [this](auto read) {
        return [this, read](int row) -> QVariant { return read(rows_[static_cast<std::size_t>(row)]); };
    };
    setRoles(
        {{"key", of([](const Row& row) { return keyOf(row.ticked.item.path); })},
         {"label", of([](const Row& row) { return textOf(lastPathComponent(row.ticked.item.path)); })},
         {"path", of([this](const Row& row) { return textOf(tildePath(row.ticked.item.path, home_)); })},
         {"section", of([](const Row& row) { return sectionName(row.section); })},
         {"title", of([this](const Row& row) { return titleOf(row); })},
         {"detail", of([this](const Row& row) { return detailOf(row); })},
         {"kind",
          [this](int row) { return static_cast<int>(kindOf(rows_[static_cast<std::size_t>(row)], row)); }},
         {"size", of(sizeOf)},
         {"tick", of([this](const Row& row) {
              return row.words.isEmpty() && ticks_.contains(row.ticked.item.id) ? Qt::Checked : Qt::Unchecked;
          })},
         {"refusal", of([](const Row& row) { return textOf(row.ticked.item.blockedReason.value_or("")); })},
         {"note", of([](const Row& row) { return textOf(row.ticked.item.note.value_or("")); })},
         {"listed", of([](const Row& row) { return row.words.isEmpty(); })}});
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
                                    .kind = ContentKind::folder,
                                    .kindName = {}},
                         .words = {}});
    endResetModel();
}

void LeftoversModel::remove(const std::vector<std::string>& paths) {
    for (const auto& path : paths) {
        const auto row = std::ranges::find_if(
            rows_, [&](const Row& each) { return each.words.isEmpty() && each.ticked.item.path == path; });
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
    const bool isApp = row.section == Section::app && LeftoverItem::evidence(item).empty();
    return textOf(isApp ? item.title : tildePath(item.path, home_));
}

QString LeftoversModel::detailOf(const Row& row) const {
    if (!row.words.isEmpty())
        return {};
    const auto& item = row.ticked.item;
    const auto evidence = LeftoverItem::evidence(item);
    return textOf(evidence.empty() ? tildePath(item.path, home_) : std::string(evidence));
}

/// What it is itself, whatever most of its content is.
ContentKind LeftoversModel::kindOf(const Row& row, int number) {
    if (number == 0 && row.section == Section::app)
        return ContentKind::application;
    return row.ticked.item.scanStamp.isDirectory ? ContentKind::folder : row.ticked.kind;
}

QString LeftoversModel::sizeOf(const Row& row) {
    if (!row.words.isEmpty())
        return {};
    // What may not move is not measured.
    const auto& item = row.ticked.item;
    return item.isSelectable() || item.estimatedBytes > 0 ? ByteFigure(item.estimatedBytes).text()
                                                          : QStringLiteral("—");
}

int LeftoversModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

} // namespace orbel

#include "Models/LargeOldModel.h"

#include "Models/ByteFigure.h"
#include "Models/ItemKey.h"
#include "Models/Wording.h"
#include "Util/PathText.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace orbel {

namespace {

/// A list that loses more rows than these is shown anew.
constexpr std::size_t mostRemovals = 50;

QString recordText(LastUsed::Record record) {
    switch (record) {
    case LastUsed::Record::usageIndex:
        return LargeOldModel::tr("recently used list");
    case LastUsed::Record::accessTime:
        return LargeOldModel::tr("file access time");
    case LastUsed::Record::creationTime:
        return LargeOldModel::tr("file creation time");
    case LastUsed::Record::modificationTime:
        break;
    }
    return LargeOldModel::tr("file change time");
}

QString openText(const std::vector<ProcessUse>& users) {
    if (users.empty())
        return {};
    auto words = LargeOldModel::tr("Open in %1").arg(textOf(users.front().name));
    if (users.size() > 1)
        words += LargeOldModel::tr(" and %1 more").arg(countText(users.size() - 1));
    return words;
}

} // namespace

LargeOldModel::LargeOldModel(const Ticks& ticks, std::string home)
    : ticks_(ticks), home_(std::move(home)), list_(std::make_shared<LargeOldList>()) {
    using Row = LargeOldQuery::Row;
    const auto of = [this](auto read) {
        return [this, read](int place) -> QVariant { return read(rowAt(place)); };
    };
    setRoles({{"key", of([](const Row& row) { return keyOf(row.item.path); })},
              {"node", of([](const Row& row) { return row.index; })},
              {"name", of([](const Row& row) { return textOf(row.item.title); })},
              {"folder",
               of([this](const Row& row) { return textOf(tildePath(parentPath(row.item.path), home_)); })},
              {"path", of([this](const Row& row) { return textOf(tildePath(row.item.path, home_)); })},
              {"kind", [this](int place) { return static_cast<int>(kindAt(place)); }},
              {"kindName", [this](int place) { return textOf(title(kindAt(place))); }},
              {"size", of([](const Row& row) { return ByteFigure(row.bytes).text(); })},
              {"lastUsed", of([](const Row& row) {
                   return row.lastUsed.isKnown ? dayText(row.lastUsed.date) : QStringLiteral("—");
               })},
              {"record", of([](const Row& row) {
                   return row.lastUsed.isKnown ? recordText(row.lastUsed.record) : QString();
               })},
              {"tick", of([this](const Row& row) {
                   return ticks_.contains(row.id()) ? Qt::Checked : Qt::Unchecked;
               })},
              {"refusal", of([](const Row& row) { return textOf(row.item.blockedReason.value_or("")); })},
              {"openIn", of([](const Row& row) { return openText(row.openBy); })},
              {"note", of([](const Row& row) { return textOf(row.item.note.value_or("")); })}});
}

void LargeOldModel::show(std::shared_ptr<const LargeOldList> list, LargeOldOrder order) {
    if (list == list_ && order == order_)
        return;
    beginResetModel();
    list_ = std::move(list);
    order_ = std::move(order);
    sumUp();
    endResetModel();
}

void LargeOldModel::drop(const std::vector<std::string>& paths) {
    std::vector<int> going;
    for (const auto& path : paths) {
        if (const int place = placeOf(path); place >= 0)
            going.push_back(place);
    }
    for (const int place : going)
        order_.places[order_.rows[static_cast<std::size_t>(place)]] = LargeOldOrder::nowhere;
    if (going.size() > mostRemovals) {
        beginResetModel();
        std::erase_if(order_.rows,
                      [this](std::uint32_t row) { return order_.places[row] == LargeOldOrder::nowhere; });
        endResetModel();
    } else {
        // From the end, so that the places of those before stay.
        std::ranges::sort(going);
        for (const int place : std::views::reverse(going)) {
            beginRemoveRows({}, place, place);
            order_.rows.erase(order_.rows.begin() + place);
            endRemoveRows();
        }
    }
    for (std::uint32_t place = 0; place < order_.rows.size(); ++place)
        order_.places[order_.rows[place]] = place;
    sumUp();
}

void LargeOldModel::sumUp() {
    bytes_ = 0;
    for (const auto row : order_.rows)
        bytes_ += list_->rows()[row].bytes;
}

int LargeOldModel::placeOf(std::string_view path) const {
    const auto row = list_->find(path);
    return !row || order_.places[*row] == LargeOldOrder::nowhere ? -1 : static_cast<int>(order_.places[*row]);
}

ContentKind LargeOldModel::kindAt(int place) const {
    return list_->kind(order_.rows[static_cast<std::size_t>(place)]);
}

const LargeOldQuery::Row& LargeOldModel::rowAt(int place) const {
    return list_->rows()[order_.rows[static_cast<std::size_t>(place)]];
}

int LargeOldModel::rowOfKey(const QString& key) const {
    return placeOf(pathOfKey(key));
}

int LargeOldModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_.rows.size());
}

} // namespace orbel

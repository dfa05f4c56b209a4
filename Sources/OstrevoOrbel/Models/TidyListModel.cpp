#include "Models/TidyListModel.h"

#include "Models/ByteFigure.h"
#include "Models/FreedAside.h"
#include "Models/ItemKey.h"
#include "Models/PathSet.h"
#include "Models/Wording.h"

#include <algorithm>

namespace orbel {

namespace {

/// So many rows take no time to be freed.
constexpr std::size_t quicklyDropped = 2'000;

QString sizeText(const TidyListModel::Row& row) {
    return row.isSized ? ByteFigure(row.item.item.estimatedBytes).text() : QString();
}

} // namespace

TidyListModel::TidyListModel() {
    connect(&ticks_, &Ticks::changed, this, [this] {
        notifyRows();
        Q_EMIT changed();
    });
    const auto of = [this](auto read) {
        return [this, read](int shown) -> QVariant { return read(row(shown)); };
    };
    setRoles(
        {{"key", of([](const Row& row) { return keyOf(row.item.item.path); })},
         {"label", of([](const Row& row) { return textOf(lastPathComponent(row.item.item.path)); })},
         {"path", of([this](const Row& row) { return pathText(row); })},
         {"detail", of([](const Row& row) { return row.detail; })},
         {"badge", of([](const Row& row) { return row.badge; })},
         {"warn", of([](const Row& row) { return row.isAmiss; })},
         {"size", of([](const Row& row) { return sizeText(row); })},
         {"ticked", [this](int shown) { return isTicked(shown); }},
         {"refusal", of([](const Row& row) { return textOf(row.item.item.blockedReason.value_or("")); })},
         {"words", of([this](const Row& row) {
              QStringList words{pathText(row), row.item.kindName, row.detail, row.badge, sizeText(row)};
              words.removeAll(QString());
              return words.join(QStringLiteral(", "));
          })}});
}

QString TidyListModel::pathText(const Row& row) const {
    return textOf(tildePath(row.item.item.path, home_));
}

void TidyListModel::forgetChoices() {
    choices_.clear();
    preselects_ = true;
}

TidyListModel::Choices TidyListModel::choices() {
    return {.ticked = ticks_.lend(), .byHand = choices_, .preselects = preselects_};
}

std::unique_ptr<Ticks::Content> TidyListModel::Choices::of(const Rows& rows) const {
    auto content = std::make_unique<Ticks::Content>();
    for (const auto& row : rows) {
        const auto& id = row->item.item.id;
        const auto choice = byHand.find(id);
        const bool isTicked = choice != byHand.end()
                                  ? choice->second
                                  : ticked->contains(id) || (preselects && row->isPreselected);
        if (isTicked)
            content->put(row->item);
    }
    return content;
}

void TidyListModel::setRows(Rows rows, std::string home, const Choices& choices,
                            std::unique_ptr<Ticks::Content> ticked) {
    beginResetModel();
    std::swap(rows_, rows);
    home_ = std::move(home);
    show();
    endResetModel();
    if (!ticks_.take(choices.ticked, std::move(ticked))) {
        const auto now = this->choices();
        ticks_.take(now.ticked, now.of(rows_));
    }
    const bool isLong = rows.size() > quicklyDropped;
    freeAside(std::move(rows), isLong);
}

void TidyListModel::clear() {
    ticks_.clear();
    setRows({}, {}, choices(), std::make_unique<Ticks::Content>());
}

bool TidyListModel::passes(const Row& row, const TextMatcher& text) const {
    return text.isInPath(row.item.item.path, home_)
           && (filter_.program.isEmpty() || filter_.program == row.program)
           && (!filter_.unchangedSince || row.newestChange <= *filter_.unchangedSince);
}

void TidyListModel::show() {
    const TextMatcher text(filter_.text.toStdString());
    shown_.clear();
    shownPaths_.clear();
    tickable_ = 0;
    inside_ = 0;
    bytes_ = 0;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const auto& item = rows_[i]->item;
        inside_ += item.count;
        bytes_ += item.item.estimatedBytes;
        if (!passes(*rows_[i], text))
            continue;
        shown_.push_back(i);
        if (!filter_.isNone())
            shownPaths_.insert(item.item.path);
        tickable_ += item.item.isSelectable() ? 1 : 0;
    }
}

void TidyListModel::setFilter(Filter filter) {
    if (filter == filter_)
        return;
    beginResetModel();
    filter_ = std::move(filter);
    show();
    endResetModel();
    if (filter_.isNone())
        ticks_.setFilter(nullptr);
    else
        ticks_.setFilter([this](const TickedItem& item) { return shownPaths_.contains(item.item.path); });
}

void TidyListModel::setTicked(int row, bool ticked) {
    if (!isRow(row))
        return;
    const auto& item = this->row(row).item;
    if (ticks_.setTicked(item, ticked))
        choices_[item.item.id] = ticked;
}

void TidyListModel::untickAll() {
    choices_.clear();
    preselects_ = false;
    ticks_.replaceAll({});
}

TidyListModel::Rows TidyListModel::shownRows() const {
    Rows rows;
    rows.reserve(shown_.size());
    for (const auto number : shown_)
        rows.push_back(rows_[number]);
    return rows;
}

void TidyListModel::noteAllTicked() {
    std::erase_if(choices_, [this](const auto& choice) { return ticks_.contains(choice.first); });
}

void TidyListModel::remove(const std::vector<std::string>& paths) {
    const PathSet places(paths);
    beginResetModel();
    std::vector<std::string> gone;
    std::erase_if(rows_, [&](const auto& row) {
        const bool isGone = places.covers(row->item.item.path);
        if (isGone)
            gone.push_back(row->item.item.id);
        return isGone;
    });
    show();
    endResetModel();
    ticks_.untickAll(gone);
}

std::vector<TickedItem> TidyListModel::ticked() const {
    std::vector<TickedItem> items;
    for (const auto& row : rows_) {
        if (ticks_.contains(row->item.item.id))
            items.push_back(row->item);
    }
    return items;
}

int TidyListModel::rowOfKey(const QString& key) const {
    const auto path = pathOfKey(key);
    const auto found = std::ranges::find_if(
        shown_, [&](std::size_t number) { return rows_[number]->item.item.path == path; });
    return found == shown_.end() ? -1 : static_cast<int>(found - shown_.begin());
}

int TidyListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

} // namespace orbel

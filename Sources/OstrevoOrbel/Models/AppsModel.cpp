#include "Models/AppsModel.h"

#include "Models/ByteFigure.h"
#include "Models/IconAddress.h"
#include "Models/ItemKey.h"
#include "Models/Wording.h"
#include "Util/PathText.h"
#include "Util/TextMatcher.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <tuple>
#include <utility>

namespace orbel {

QString AppsModel::Entry::id(const std::string& home) const {
    if (isRemoved())
        return textOf(app.bundleID.value_or(""));
    if (app.status == InstalledApp::Status::removable || !app.bundleID)
        return textOf(tildePath(app.path, home));
    return textOf(*app.bundleID);
}

QString AppsModel::Entry::initial() const {
    const auto letters = textOf(app.name).toUcs4();
    const auto letter = std::ranges::find_if(letters, [](uint c) { return QChar::isLetterOrNumber(c); });
    if (letter == letters.end())
        return QStringLiteral("?");
    const char32_t upper = QChar::toUpper(*letter);
    return QString::fromUcs4(&upper, 1);
}

QString AppsModel::Entry::size() const {
    return bytes ? ByteFigure(*bytes).text() : QStringLiteral("—");
}

AppsModel::AppsModel(std::string home, QObject* parent) : RoleList(parent), home_(std::move(home)) {
    const auto of = [this](auto read) {
        return [this, read](int row) -> QVariant { return read(*at(row)); };
    };
    setRoles({{"key", of([](const Entry& entry) {
                   return keyOf(entry.isRemoved() ? entry.removedPath : entry.app.path);
               })},
              {"section", of([](const Entry& entry) {
                   return entry.isRemoved() ? QStringLiteral("removed") : QStringLiteral("installed");
               })},
              {"name", of([](const Entry& entry) { return textOf(entry.app.name); })},
              {"identity", of([this](const Entry& entry) { return entry.id(home_); })},
              {"picture", of([](const Entry& entry) { return iconAddress(entry.app.icon); })},
              {"initial", of([](const Entry& entry) { return entry.initial(); })},
              {"source", of([](const Entry& entry) { return textOf(entry.app.source); })},
              {"size", of([](const Entry& entry) { return entry.size(); })}});
}

void AppsModel::setEntries(std::vector<Entry> entries) {
    beginResetModel();
    const auto installed = entries.size();
    std::move(entries_.begin() + static_cast<std::ptrdiff_t>(installed_), entries_.end(),
              std::back_inserter(entries));
    installed_ = installed;
    entries_ = std::move(entries);
    arrange();
    endResetModel();
}

void AppsModel::setRemoved(std::vector<Entry> entries) {
    if (entries.empty() && installed_ == entries_.size())
        return;
    beginResetModel();
    entries_.resize(installed_);
    std::ranges::move(entries, std::back_inserter(entries_));
    arrange();
    endResetModel();
}

void AppsModel::setBytes(const std::string& path, std::optional<std::uint64_t> bytes) {
    const auto entry = std::ranges::find(entries_, path, [](const Entry& each) { return each.app.path; });
    if (entry == entries_.end() || entry->bytes == bytes)
        return;
    entry->bytes = bytes;
    const int row = rowOf(path);
    if (!bySize_) {
        if (row >= 0)
            Q_EMIT dataChanged(index(row), index(row));
        return;
    }
    beginResetModel();
    arrange();
    endResetModel();
}

void AppsModel::remove(const std::string& path) {
    const auto entry = std::ranges::find(entries_, path, [](const Entry& each) { return each.app.path; });
    if (entry == entries_.end())
        return;
    const auto number = static_cast<std::size_t>(entry - entries_.begin());
    const int row = rowOf(path);
    if (row >= 0)
        beginRemoveRows({}, row, row);
    entries_.erase(entry);
    installed_ -= number < installed_ ? 1 : 0;
    std::erase(rows_, number);
    for (auto& each : rows_)
        each -= each > number ? 1 : 0;
    if (row >= 0)
        endRemoveRows();
}

void AppsModel::setFilter(const QString& text) {
    const auto wanted = text.trimmed();
    if (wanted == filter_)
        return;
    beginResetModel();
    filter_ = wanted;
    arrange();
    endResetModel();
}

void AppsModel::sortBy(bool size, bool descending) {
    if (size == bySize_ && descending == descending_)
        return;
    beginResetModel();
    bySize_ = size;
    descending_ = descending;
    arrange();
    endResetModel();
    Q_EMIT orderChanged();
}

/// The entries come in the order of their names, which settles what is of one size.
void AppsModel::arrange() {
    rows_.resize(entries_.size());
    std::iota(rows_.begin(), rows_.end(), 0); // NOLINT(modernize-use-ranges): g++ 12 has no such iota
    const TextMatcher matcher(filter_.toStdString());
    std::erase_if(rows_, [&](std::size_t number) {
        const auto& entry = entries_[number];
        return !matcher.isIn(entry.app.name) && !matcher.isIn(withoutIsolates(entry.id(home_)).toStdString())
               && !matcher.isIn(entry.app.source);
    });
    if (!bySize_ && descending_)
        std::ranges::reverse(rows_);
    // What is not known comes last either way.
    const auto rank = [this](std::size_t number) {
        const auto& [app, bytes, removedPath] = entries_[number];
        const auto known = bySize_ ? bytes.value_or(0) : 0;
        return std::tuple(!removedPath.empty(), bySize_ && !bytes, descending_ ? ~known : known);
    };
    std::ranges::stable_sort(rows_, {}, rank);
}

AppsModel::Removed AppsModel::shownRemoved() const {
    Removed removed;
    for (const auto number : rows_)
        if (number >= installed_) {
            ++removed.count;
            removed.bytes += entries_[number].bytes.value_or(0);
        }
    return removed;
}

const AppsModel::Entry* AppsModel::find(const std::string& path) const {
    const auto entry = std::ranges::find(entries_, path, [](const Entry& each) { return each.app.path; });
    return entry == entries_.end() ? nullptr : &*entry;
}

const AppsModel::Entry* AppsModel::at(int row) const {
    return row >= 0 && row < rowCount() ? &entries_[rows_[static_cast<std::size_t>(row)]] : nullptr;
}

int AppsModel::rowOf(const std::string& path) const {
    const auto row =
        std::ranges::find(rows_, path, [this](std::size_t number) { return entries_[number].app.path; });
    return row == rows_.end() ? -1 : static_cast<int>(row - rows_.begin());
}

int AppsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

} // namespace orbel

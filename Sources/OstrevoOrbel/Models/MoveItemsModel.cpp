#include "Models/MoveItemsModel.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

namespace orbel {

namespace {

QString stateName(MoveItemsModel::State state) {
    switch (state) {
    case MoveItemsModel::State::waiting:
        return QStringLiteral("waiting");
    case MoveItemsModel::State::checking:
        return QStringLiteral("checking");
    case MoveItemsModel::State::moved:
        return QStringLiteral("moved");
    case MoveItemsModel::State::skipped:
        break;
    }
    return QStringLiteral("skipped");
}

} // namespace

void MoveItemsModel::setItems(std::vector<TickedItem> items) {
    beginResetModel();
    items_ = std::move(items);
    states_.assign(items_.size(), State::waiting);
    endResetModel();
    Q_EMIT changed();
}

void MoveItemsModel::setState(std::size_t row, State state) {
    if (row >= states_.size() || states_[row] == state)
        return;
    states_[row] = state;
    const auto changedRow = index(static_cast<int>(row));
    Q_EMIT dataChanged(changedRow, changedRow, {StateRole});
}

int MoveItemsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(items_.size());
}

QVariant MoveItemsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto row = static_cast<std::size_t>(index.row());
    const auto& ticked = items_[row];
    switch (role) {
    case PathRole:
        return textOf(ticked.item.path);
    case KindRole:
        return static_cast<int>(ticked.kind);
    case KindNameRole:
        return ticked.kindName;
    case EntriesRole:
        return countText(ticked.count);
    case SizeRole:
        return ByteFigure(ticked.item.estimatedBytes).text();
    case NoteRole:
        return textOf(ticked.item.note.value_or(std::string()));
    case StateRole:
        return stateName(states_[row]);
    default:
        return {};
    }
}

QHash<int, QByteArray> MoveItemsModel::roleNames() const {
    return {{PathRole, "path"}, {KindRole, "kind"}, {KindNameRole, "kindName"}, {EntriesRole, "entries"},
            {SizeRole, "size"}, {NoteRole, "note"}, {StateRole, "stage"}};
}

} // namespace orbel

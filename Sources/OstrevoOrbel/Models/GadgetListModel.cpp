#include "Models/GadgetListModel.h"

#include <QMetaProperty>

namespace orbel {

GadgetList::GadgetList(const QMetaObject& row, QObject* parent) : QAbstractListModel(parent), row_(row) {}

QVariant GadgetList::data(const QModelIndex& index, int role) const {
    const int property = role - Qt::UserRole;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || property < 0
        || property >= row_.propertyCount())
        return {};
    return row_.property(property).readOnGadget(gadgetAt(static_cast<std::size_t>(index.row())));
}

QHash<int, QByteArray> GadgetList::roleNames() const {
    QHash<int, QByteArray> names;
    for (int i = 0; i < row_.propertyCount(); ++i)
        names.insert(Qt::UserRole + i, row_.property(i).name());
    return names;
}

} // namespace orbel

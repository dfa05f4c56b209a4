#pragma once

#include "Models/GadgetListModel.h"
#include "Models/TickedItem.h"

#include <QString>

namespace orbel {

/// An item of a confirmation, and what became of it while it moves. Points to an item of its list.
struct MoveItem {
    Q_GADGET
    Q_PROPERTY(QString path READ path)
    Q_PROPERTY(int kind READ kind)
    Q_PROPERTY(QString kindName READ kindName)
    Q_PROPERTY(QString entries READ entries)
    Q_PROPERTY(QString size READ size)
    Q_PROPERTY(QString note READ note)
    Q_PROPERTY(QString stage READ stage)

public:
    enum class State : unsigned char { waiting, checking, moved, skipped };

    const TickedItem* ticked = nullptr;
    State state = State::waiting;

    QString path() const; ///< whole
    int kind() const { return static_cast<int>(ticked->kind); }
    QString kindName() const { return ticked->kindName; }
    QString entries() const; ///< "1,284"
    QString size() const;
    QString note() const;
    QString stage() const; ///< "waiting", "checking", "moved" or "skipped"
    bool operator==(const MoveItem&) const = default;
};

/// The items of a confirmation.
class MoveItemsModel : public GadgetListModel<MoveItem> {
public:
    using State = MoveItem::State;

    void setItems(std::vector<TickedItem> items);
    const std::vector<TickedItem>& items() const { return items_; }
    void setState(std::size_t row, State state);

private:
    std::vector<TickedItem> items_;
};

} // namespace orbel

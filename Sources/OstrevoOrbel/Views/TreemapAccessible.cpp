#include "Views/TreemapAccessible.h"

#include "Views/TreemapItem.h"

#include <memory>
#include <QAccessible>
#include <QAccessibleObject>
#include <QQuickWindow>
#include <unordered_map>

namespace orbel {

namespace {

/// The rectangle of an item's part on the screen.
QRect onScreen(const TreemapItem& item, const QRectF& part) {
    if (item.window() == nullptr)
        return {};
    const QRectF inWindow = item.mapRectToScene(part);
    return {item.window()->mapToGlobal(inWindow.topLeft().toPoint()), inWindow.size().toSize()};
}

QString zoomAction() {
    return QStringLiteral("zoom");
}

/// One tile. Belongs to the map's interface, which makes it when it is asked for.
class TileInterface : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    TileInterface(TreemapItem* item, int tile) : item_(item), tile_(tile) {}

    bool isValid() const override { return item_ != nullptr && tile_ < item_->tileCount(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(item_); }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QWindow* window() const override { return item_->window(); }

    QString text(QAccessible::Text text) const override {
        if (!isValid())
            return {};
        return text == QAccessible::Name          ? item_->tileName(tile_)
               : text == QAccessible::Description ? item_->tileRefusal(tile_)
                                                  : QString();
    }
    void setText(QAccessible::Text /*text*/, const QString& /*words*/) override {}
    QRect rect() const override { return isValid() ? onScreen(*item_, item_->boxAt(tile_)) : QRect(); }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        state.invisible = !item_->isVisible();
        state.selectable = true;
        state.checkable = isValid() && item_->isTickable(tile_);
        state.checked = state.checkable && item_->isTicked(tile_);
        state.focusable = true;
        state.selected = item_->selectedTile() == tile_;
        state.focused = item_->hasActiveFocus() && item_->currentTile() == tile_;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }
    QStringList actionNames() const override {
        QStringList actions{pressAction(), zoomAction(), showMenuAction(), setFocusAction()};
        if (isValid() && item_->isTickable(tile_))
            actions << toggleAction();
        return actions;
    }
    QString localizedActionDescription(const QString& action) const override {
        return action == zoomAction() ? TreemapItem::tr("Zooms into it")
                                      : QAccessibleActionInterface::localizedActionDescription(action);
    }
    QString localizedActionName(const QString& action) const override {
        return action == zoomAction() ? TreemapItem::tr("Zoom")
                                      : QAccessibleActionInterface::localizedActionName(action);
    }
    void doAction(const QString& action) override {
        if (!isValid())
            return;
        if (action == setFocusAction())
            item_->forceActiveFocus(Qt::OtherFocusReason);
        item_->choose(tile_);
        if (action == zoomAction())
            item_->zoomInto(tile_);
        else if (action == showMenuAction())
            item_->openMenu(tile_);
        else if (action == toggleAction())
            item_->tick(tile_);
    }
    QStringList keyBindingsForAction(const QString& action) const override {
        return action == zoomAction() ? QStringList{QStringLiteral("Return")} : QStringList();
    }

private:
    TreemapItem* item_;
    int tile_;
};

class TreemapInterface : public QAccessibleObject {
public:
    explicit TreemapInterface(TreemapItem* item) : QAccessibleObject(item) {}
    TreemapInterface(const TreemapInterface&) = delete;
    TreemapInterface& operator=(const TreemapInterface&) = delete;
    ~TreemapInterface() override { forgetTiles(); }

    void forgetTiles() {
        for (const auto& [tile, id] : tiles_)
            QAccessible::deleteAccessibleInterface(id);
        tiles_.clear();
    }

    QAccessibleInterface* tile(int index) const {
        if (index < 0 || index >= item()->tileCount())
            return nullptr;
        const auto [known, isNew] = tiles_.try_emplace(index, 0);
        if (isNew)
            known->second = QAccessible::registerAccessibleInterface(new TileInterface(item(), index));
        return QAccessible::accessibleInterface(known->second);
    }

    QAccessibleInterface* parent() const override {
        for (QQuickItem* above = item()->parentItem(); above != nullptr; above = above->parentItem()) {
            auto* interface = QAccessible::queryAccessibleInterface(above);
            if (interface != nullptr && interface->role() != QAccessible::NoRole
                && !interface->state().invisible && interface->indexOfChild(this) >= 0)
                return interface;
        }
        return QAccessible::queryAccessibleInterface(item()->window());
    }
    QAccessibleInterface* child(int index) const override { return tile(index); }
    int childCount() const override { return item()->tileCount(); }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (const auto& [tile, id] : tiles_) {
            if (QAccessible::accessibleInterface(id) == child)
                return tile;
        }
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        if (item()->window() == nullptr)
            return nullptr;
        const auto inScene = item()->window()->mapFromGlobal(QPoint(x, y));
        return tile(item()->tileAt(item()->mapFromScene(inScene)));
    }
    QAccessibleInterface* focusChild() const override { return tile(item()->currentTile()); }

    QAccessible::Role role() const override { return QAccessible::List; }
    QWindow* window() const override { return item()->window(); }
    QRect rect() const override { return onScreen(*item(), item()->boundingRect()); }
    QString text(QAccessible::Text text) const override {
        const auto* map = item()->map();
        return text == QAccessible::Name && map != nullptr
                   ? TreemapItem::tr("Map of %1").arg(map->focusName())
                   : QString();
    }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.focusable = true;
        state.focused = item()->hasActiveFocus();
        state.invisible = !item()->isVisible();
        return state;
    }

private:
    TreemapItem* item() const { return static_cast<TreemapItem*>(object()); }

    mutable std::unordered_map<int, QAccessible::Id> tiles_;
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* item = qobject_cast<TreemapItem*>(object);
    return item == nullptr ? nullptr : new TreemapInterface(item);
}

} // namespace

void installTreemapAccessibility() {
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(isInstalled);
}

void announceCurrentTile(TreemapItem* item) {
    if (!QAccessible::isActive() || !item->hasActiveFocus())
        return;
    QAccessibleEvent event(item, QAccessible::Focus);
    if (item->currentTile() >= 0)
        event.setChild(item->currentTile());
    QAccessible::updateAccessibility(&event);
}

void forgetTileInterfaces(TreemapItem* item) {
    if (auto* interface = dynamic_cast<TreemapInterface*>(QAccessible::queryAccessibleInterface(item)))
        interface->forgetTiles();
}

} // namespace orbel

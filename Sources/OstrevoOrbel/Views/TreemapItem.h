#pragma once

#include "AppModel/MapModel.h"
#include "Map/TileNavigation.h"
#include "Map/TreemapTile.h"
#include "Views/TreemapPainter.h"

#include <optional>
#include <QColor>
#include <QElapsedTimer>
#include <QQuickPaintedItem>
#include <QTimer>
#include <QtQml/qqmlregistration.h>
#include <unordered_set>
#include <vector>

namespace orbel {

/// The map: all tiles in one item, which paints itself and so looks alike with every renderer.
///
/// Tiles are laid out when the folder or the size changes, once before the next frame, and never for the sake
/// of the pointer: what is hovered, selected and current is told as boxes, over which the screen draws its
/// marks, so that a move of the pointer costs a look at the list of tiles and no painting. To assistive
/// technology each tile is a child of this item (TreemapAccessible).
class TreemapItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(orbel::MapModel* map READ map WRITE setMap NOTIFY mapChanged)
    Q_PROPERTY(bool dark MEMBER isDark_ NOTIFY lookChanged)
    Q_PROPERTY(bool highContrast MEMBER isContrastHigh_ NOTIFY lookChanged)
    Q_PROPERTY(QString family MEMBER family_ NOTIFY lookChanged)
    /// Pixels a point: the desktop's font scale.
    Q_PROPERTY(qreal unit READ unit WRITE setUnit NOTIFY lookChanged)
    /// Keeps the tiles that there are, whatever the map shows by now: while a zoom is drawn over them.
    Q_PROPERTY(bool held READ isHeld WRITE setHeld NOTIFY heldChanged)
    /// The nodes that bear a tick.
    Q_PROPERTY(QList<quint32> ticked READ ticked WRITE setTicked NOTIFY tickedChanged)

    // In this item's coordinates; empty when there is no such tile.
    Q_PROPERTY(QRectF hoverBox READ hoverBox NOTIFY hoverChanged)
    Q_PROPERTY(QRectF selectedBox READ selectedBox NOTIFY marksChanged)
    /// Of what holds the selected item, where that has no tile itself.
    Q_PROPERTY(QRectF holdingBox READ holdingBox NOTIFY marksChanged)
    Q_PROPERTY(QRectF currentBox READ currentBox NOTIFY marksChanged)
    /// The focus came by the keyboard, and so has to be seen.
    Q_PROPERTY(bool focusShown READ isFocusShown NOTIFY marksChanged)
    /// What a hovered tile that is no item stands for; empty over others.
    Q_PROPERTY(QString hoverHint READ hoverHint NOTIFY hoverChanged)
    /// What the pointer is on, else what has the focus.
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(int tileCount READ tileCount NOTIFY laidOut)

public:
    explicit TreemapItem(QQuickItem* parent = nullptr);

    /// The box of the tile that a node has or is merged into; empty when it is not on the map.
    Q_INVOKABLE QRectF boxOf(quint32 node);
    /// The ground that a zoom into a node begins with.
    Q_INVOKABLE QColor colorOf(quint32 node) const;

    MapModel* map() const { return map_; }
    void setMap(MapModel* map);
    qreal unit() const { return unit_; }
    void setUnit(qreal unit);
    bool isHeld() const { return isHeld_; }
    void setHeld(bool held);
    QList<quint32> ticked() const;
    void setTicked(const QList<quint32>& nodes);
    QRectF hoverBox() const { return boxAt(hovered_); }
    QRectF selectedBox() const { return boxAt(selected_); }
    QRectF holdingBox() const { return boxAt(holding_); }
    QRectF currentBox() const { return boxAt(current_); }
    bool isFocusShown() const { return hasActiveFocus() && isFocusShown_; }
    QString hoverHint() const;
    QString status() const;
    int tileCount() const { return static_cast<int>(tiles_.size()); }

    // For assistive technology, and for tests.

    const std::vector<TreemapTile>& tiles() const { return tiles_; }
    /// -1 for none.
    int currentTile() const { return current_; }
    int selectedTile() const { return selected_; }
    int tileAt(QPointF position) const;
    /// "{name}, {kind}, {size}, {share} of {focus folder}"
    QString tileName(int tile) const;
    /// Of the item of a tile: whether it may be ticked, why not as far as known, and whether it is.
    bool isTickable(int tile) const;
    QString tileRefusal(int tile) const;
    bool isTicked(int tile) const;
    void tick(int tile);
    QRectF boxAt(int tile) const;
    /// Makes a tile the current one, and selects its item.
    void choose(int tile);
    void zoomInto(int tile);
    void openMenu(int tile);
    /// How often tiles were laid out.
    int layouts() const { return layouts_; }
    void ensureLaidOut();

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void mapChanged();
    void lookChanged();
    void heldChanged();
    void tickedChanged();
    void hoverChanged();
    void marksChanged();
    void statusChanged();
    void laidOut();
    /// The user wants to see what is in this node, whose box is `from`.
    void zoomWanted(quint32 node, const QRectF& from);
    void upWanted();
    void menuWanted(quint32 node, const QPointF& position);
    /// Its path, or the whole row of it.
    void copyWanted(quint32 node, bool whole);
    void tickWanted(quint32 node);
    /// All items of the folder that fills the map are to be ticked, or nothing.
    void allWanted(bool ticked);

protected:
    void updatePolish() override;
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void invalidate();
    void layOut();
    void takeSelection();
    void setHovered(int tile);
    void move(TileNavigation::Direction direction);
    void type(const QString& text);
    /// Letters were typed just before, to which more may be added.
    bool isTyping() const;
    int tileOf(NodeIndex node) const;
    /// The tiles are of the tree that the map has: their nodes may be looked up in it.
    bool isOfThisTree() const { return map_ != nullptr && shownTree_ == map_->sharedTree(); }
    /// Whether the node or a folder that holds it is ticked.
    bool moves(NodeIndex node) const;
    std::optional<NodeIndex> nodeOf(int tile) const;
    std::optional<NodeIndex> zoomTargetOf(int tile) const;
    void zoomOneLevel(QPointF position);
    QString describe(int tile) const;
    double scale() const;
    TreemapPainter::Style style(const MapColors& colors, const FileTree& tree) const;

    MapModel* map_ = nullptr;
    bool isDark_ = false;
    bool isContrastHigh_ = false;
    QString family_;
    qreal unit_ = 1;
    bool isHeld_ = false;
    std::unordered_set<NodeIndex> ticked_;

    std::vector<TreemapTile> tiles_;            ///< in points, of which `unit_` pixels are one
    std::shared_ptr<const FileTree> shownTree_; ///< that they were made of
    bool isStale_ = true;
    int layouts_ = 0;
    std::optional<QPointF> pointer_; ///< while it is over this item
    int hovered_ = -1;
    int selected_ = -1;
    int holding_ = -1; ///< the tile around the selection where that has none
    int current_ = -1;
    bool isFocusShown_ = false;
    QString typed_; ///< shortly before
    QElapsedTimer sinceTyped_;
    int wheelTurn_ = 0;                    ///< since the last step, in eighths of a degree
    std::optional<quint64> lastWheelStep_; ///< in milliseconds, as events tell it
    NodeIndex saidFolder_ = 0;
    QTimer
        saying_; ///< of the current tile: other tiles may follow at once, as while a bar below the map grows
};

} // namespace orbel

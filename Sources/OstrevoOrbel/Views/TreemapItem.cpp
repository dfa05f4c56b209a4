#include "Views/TreemapItem.h"

#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/Wording.h"
#include "Views/TreemapAccessible.h"
#include "Views/TreemapPainter.h"

#include <algorithm>
#include <cmath>
#include <QAccessible>
#include <QQuickWindow>
#include <utility>

namespace orbel {

namespace {

/// Never reached on a screen: the area of the tiles bounds their number. A bound all the same, for what is
/// larger than any screen.
constexpr std::size_t mostTiles = 300'000;
constexpr int deepest = 64;
constexpr qint64 forgottenAfter = 1000; ///< milliseconds
constexpr int saidAfter = 100;          ///< milliseconds

bool isByKeyboard(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason
           || reason == Qt::ShortcutFocusReason;
}

} // namespace

TreemapItem::TreemapItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    installTreemapAccessibility();
    setAcceptHoverEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton | Qt::MiddleButton);
    setActiveFocusOnTab(true);
    setOpaquePainting(true);
    connect(this, &TreemapItem::lookChanged, this, [this] { update(); });
    saying_.setInterval(saidAfter);
    saying_.setSingleShot(true);
    connect(&saying_, &QTimer::timeout, this, [this] {
        const bool isOther = map_ != nullptr && std::exchange(saidFolder_, map_->focus()) != map_->focus();
        if (isOther || current_ >= 0)
            announceCurrentTile(this);
    });
}

void TreemapItem::setMap(MapModel* map) {
    if (map == map_)
        return;
    if (map_ != nullptr)
        disconnect(map_, nullptr, this, nullptr);
    map_ = map;
    if (map_ != nullptr) {
        connect(map_, &MapModel::focusChanged, this, &TreemapItem::invalidate);
        connect(map_, &MapModel::selectionChanged, this, &TreemapItem::takeSelection);
        connect(map_, &MapModel::legendChanged, this, [this] { update(); });
        connect(map_, &QObject::destroyed, this, [this] { map_ = nullptr; });
    }
    invalidate();
    Q_EMIT mapChanged();
}

void TreemapItem::setUnit(qreal unit) {
    if (unit == unit_ || unit <= 0)
        return;
    unit_ = unit;
    invalidate();
    Q_EMIT lookChanged();
}

void TreemapItem::setHeld(bool held) {
    if (held == isHeld_)
        return;
    isHeld_ = held;
    if (isHeld_)
        setHovered(-1);
    else if (isStale_)
        polish();
    Q_EMIT heldChanged();
}

QList<quint32> TreemapItem::ticked() const {
    return {ticked_.begin(), ticked_.end()};
}

void TreemapItem::setTicked(const QList<quint32>& nodes) {
    std::unordered_set<NodeIndex> wanted(nodes.begin(), nodes.end());
    if (wanted == ticked_)
        return;
    ticked_ = std::move(wanted);
    update();
    Q_EMIT tickedChanged();
}

// The tiles.

void TreemapItem::invalidate() {
    isStale_ = true;
    if (!isHeld_)
        polish();
}

void TreemapItem::updatePolish() {
    ensureLaidOut();
}

void TreemapItem::ensureLaidOut() {
    if (isStale_ && !isHeld_)
        layOut();
}

void TreemapItem::layOut() {
    isStale_ = false;
    ++layouts_;
    const auto former = std::exchange(tiles_, {});
    const auto formerTree = std::exchange(shownTree_, map_ == nullptr ? nullptr : map_->sharedTree());
    const TreemapRect area{.x = 0, .y = 0, .width = width() / unit_, .height = height() / unit_};
    if (map_ != nullptr && map_->tree().count() > 0)
        tiles_ = TreemapModel::tiles(map_->tree(), map_->focus(), area, deepest, map_->coverage(), mostTiles);
    if (formerTree != shownTree_
        || !std::ranges::equal(tiles_, former, {}, &TreemapTile::content, &TreemapTile::content)) {
        forgetTileInterfaces(this);
        saying_.start();
    }
    current_ = -1;
    hovered_ = pointer_ ? tileAt(*pointer_) : -1;
    takeSelection();
    update();
    if (map_ != nullptr)
        map_->noteTiles(tileCount());
    Q_EMIT laidOut();
    Q_EMIT hoverChanged();
}

void TreemapItem::takeSelection() {
    if (isStale_)
        return; // comes again once there are tiles to choose from
    const auto selected = map_ != nullptr ? map_->selectedNode() : std::nullopt;
    selected_ = selected ? tileOf(*selected) : -1;
    holding_ = -1;
    if (selected && selected_ < 0) {
        auto above = map_->tree().parent(*selected);
        for (; holding_ < 0 && above && *above != map_->focus(); above = map_->tree().parent(*above))
            holding_ = tileOf(*above);
    }
    if (const int marked = std::max(selected_, holding_); marked >= 0)
        current_ = marked;
    Q_EMIT marksChanged();
    Q_EMIT statusChanged();
}

int TreemapItem::tileOf(NodeIndex node) const {
    if (!isOfThisTree() || node >= map_->tree().count())
        return -1;
    const auto parent = map_->tree().parent(node);
    int merged = -1;
    for (const TreemapTile& tile : tiles_) {
        if (const auto* own = std::get_if<TreemapTile::Node>(&tile.content);
            own != nullptr && own->index == node)
            return tile.id;
        if (const auto* smaller = std::get_if<TreemapTile::SmallerItems>(&tile.content);
            smaller != nullptr && smaller->parent == parent)
            merged = tile.id;
    }
    return merged;
}

int TreemapItem::tileAt(QPointF position) const {
    const auto* tile = TreemapModel::hit(tiles_, position.x() / unit_, position.y() / unit_);
    return tile == nullptr ? -1 : tile->id;
}

std::optional<NodeIndex> TreemapItem::nodeOf(int tile) const {
    if (tile < 0 || !isOfThisTree())
        return std::nullopt;
    const auto* node = std::get_if<TreemapTile::Node>(&tiles_[static_cast<std::size_t>(tile)].content);
    return node == nullptr ? std::nullopt : std::optional(node->index);
}

double TreemapItem::scale() const {
    return (window() == nullptr ? 1 : window()->effectiveDevicePixelRatio()) * unit_;
}

QRectF TreemapItem::boxAt(int tile) const {
    if (tile < 0)
        return {};
    const auto box = snapped(tiles_[static_cast<std::size_t>(tile)].rect, scale());
    const double pixel = scale() / unit_;
    return {box.x / pixel, box.y / pixel, box.width / pixel, box.height / pixel};
}

QRectF TreemapItem::boxOf(quint32 node) {
    ensureLaidOut();
    return map_ == nullptr ? QRectF() : boxAt(tileOf(node));
}

QColor TreemapItem::colorOf(quint32 node) const {
    const auto& colors = MapColors::of(isDark_, isContrastHigh_);
    if (map_ == nullptr || node >= map_->tree().count() || TreemapModel::isPlainFolder(map_->tree(), node))
        return {QRgb(0xFF000000U | colors.frame(0))};
    return {QRgb(0xFF000000U | TreemapPainter::lookOf(node, style(colors, map_->tree())).paint.fill)};
}

void TreemapItem::paint(QPainter* painter) {
    const auto& colors = MapColors::of(isDark_, isContrastHigh_);
    const double pixel = scale() / unit_;
    painter->scale(1 / pixel, 1 / pixel);
    painter->fillRect(QRectF(0, 0, width() * pixel, height() * pixel),
                      QColor(QRgb(0xFF000000U | colors.ground)));
    if (shownTree_ == nullptr)
        return;
    const auto style = TreemapItem::style(colors, *shownTree_);
    TreemapPainter(*painter, style).draw(tiles_);
}

TreemapPainter::Style TreemapItem::style(const MapColors& colors, const FileTree& tree) const {
    const bool isOfMap = map_ != nullptr && &map_->tree() == &tree;
    return {
        .colors = colors,
        .family = family_,
        .scale = scale(),
        .tree = &tree,
        .filter = map_ == nullptr ? MapFilter() : map_->filter(),
        .changes = isOfMap ? map_->nodeChanges() : nullptr,
        .changesShown = isOfMap ? map_->changesShown() : 0,
        .isTicked = [this](NodeIndex node) { return moves(node); },
    };
}

bool TreemapItem::moves(NodeIndex node) const {
    if (ticked_.empty() || node >= map_->tree().count())
        return false;
    for (std::optional<NodeIndex> at = node; at; at = map_->tree().parent(*at)) {
        if (ticked_.contains(*at))
            return true;
    }
    return false;
}

// Words.

QString TreemapItem::tileName(int tile) const {
    if (!isOfThisTree())
        return {};
    const auto& shown = tiles_[static_cast<std::size_t>(tile)];
    const auto* smaller = std::get_if<TreemapTile::SmallerItems>(&shown.content);
    QStringList words{smaller != nullptr ? smallerItemsText(smaller->count) : textOf(shown.label)};
    if (const auto node = nodeOf(tile))
        words << kindText(map_->tree(), *node);
    words << ByteFigure(shown.bytes).text()
          << tr("%1 of %2").arg(shareText(shown.bytes, map_->focusBytes()), map_->focusName());
    if (const auto node = nodeOf(tile))
        words << map_->changeText(*node);
    words.removeAll(QString());
    return words.join(QStringLiteral(", "));
}

QString TreemapItem::describe(int tile) const {
    if (!isOfThisTree())
        return {};
    const auto& shown = tiles_[static_cast<std::size_t>(tile)];
    const QString size = ByteFigure(shown.bytes).text();
    if (const auto node = nodeOf(tile)) {
        const auto facts = map_->facts(*node);
        QStringList words{facts.path, facts.kindName, size, facts.change,
                          tr("changed %1").arg(facts.changed)};
        words.removeAll(QString());
        return words.join(QStringLiteral(" · "));
    }
    if (const auto* smaller = std::get_if<TreemapTile::SmallerItems>(&shown.content))
        return tr("%1 in %2 · %3 together")
            .arg(smallerItemsText(smaller->count), map_->facts(smaller->parent).path, size);
    const auto leftOut = leftOutText(map_->tree());
    return leftOut.isEmpty() ? tr("Not measured · %1").arg(size)
                             : tr("Not measured · %1 · %2").arg(size, leftOut);
}

QString TreemapItem::hoverHint() const {
    if (hovered_ < 0 || nodeOf(hovered_))
        return {};
    const auto& shown = tiles_[static_cast<std::size_t>(hovered_)];
    const QString size = ByteFigure(shown.bytes).text();
    if (std::holds_alternative<TreemapTile::SmallerItems>(shown.content))
        return tr("%1 together, each too small to be drawn here. The list and a closer look show them.")
            .arg(size);
    const auto unreadable = std::get<TreemapTile::NotMeasured>(shown.content).unreadable;
    QString words =
        tr("%1 are in use on this disk but were not seen: file system overhead, deleted files that are "
           "still open, and what may not be read.")
            .arg(size);
    if (unreadable > 0)
        words += QLatin1Char(' ')
                 + tr("%1 could not be read.").arg(countOf(unreadable, tr("entry"), tr("entries")));
    if (const auto leftOut = leftOutText(map_->tree()); !leftOut.isEmpty())
        words += QLatin1Char(' ') + tr("%1 of measuring.").arg(leftOut);
    return words;
}

QString TreemapItem::status() const {
    if (hovered_ >= 0)
        return describe(hovered_);
    if (current_ < 0 || !hasActiveFocus())
        return {};
    return isFocusShown() ? describe(current_)
                                + (map_->ticking()->isPossible()
                                       ? tr(" · arrows move, Enter zooms, Space ticks, Backspace goes up")
                                       : tr(" · arrows move, Enter zooms, Backspace goes up"))
                          : describe(current_);
}

// What the user does.

void TreemapItem::setHovered(int tile) {
    if (tile == hovered_)
        return;
    hovered_ = tile;
    Q_EMIT hoverChanged();
    Q_EMIT statusChanged();
}

void TreemapItem::choose(int tile) {
    current_ = tile;
    selected_ = -1;
    holding_ = -1;
    if (const auto node = nodeOf(tile)) {
        selected_ = tile;
        map_->select(*node);
    } else {
        map_->clearSelection();
    }
    current_ = tile;
    Q_EMIT marksChanged();
    Q_EMIT statusChanged();
    saying_.stop();
    announceCurrentTile(this);
}

std::optional<NodeIndex> TreemapItem::zoomTargetOf(int tile) const {
    if (tile < 0 || !isOfThisTree())
        return std::nullopt;
    const auto& content = tiles_[static_cast<std::size_t>(tile)].content;
    if (const auto* smaller = std::get_if<TreemapTile::SmallerItems>(&content))
        return map_->zoomTarget(smaller->parent);
    const auto node = nodeOf(tile);
    return node ? map_->zoomTarget(*node) : std::nullopt;
}

void TreemapItem::zoomInto(int tile) {
    if (const auto target = zoomTargetOf(tile))
        Q_EMIT zoomWanted(*target, boxAt(tileOf(*target)));
}

void TreemapItem::openMenu(int tile) {
    if (const auto node = nodeOf(tile)) {
        const QRectF box = boxAt(tile);
        Q_EMIT menuWanted(*node,
                          box.topLeft() + QPointF(std::min(box.width(), 24.0), std::min(box.height(), 24.0)));
    }
}

bool TreemapItem::isTickable(int tile) const {
    return isOfThisTree() && nodeOf(tile) && tileRefusal(tile).isEmpty();
}

QString TreemapItem::tileRefusal(int tile) const {
    const auto node = isOfThisTree() ? nodeOf(tile) : std::nullopt;
    return node ? map_->ticking()->refusalOf(*node) : QString();
}

bool TreemapItem::isTicked(int tile) const {
    const auto node = isOfThisTree() ? nodeOf(tile) : std::nullopt;
    return node && moves(*node);
}

void TreemapItem::tick(int tile) {
    if (const auto node = nodeOf(tile))
        Q_EMIT tickWanted(*node);
}

void TreemapItem::mousePressEvent(QMouseEvent* event) {
    if (isHeld_)
        return;
    ensureLaidOut();
    isFocusShown_ = false;
    forceActiveFocus(Qt::MouseFocusReason);
    if (event->button() == Qt::MiddleButton) {
        Q_EMIT upWanted();
        return;
    }
    const int tile = tileAt(event->position());
    if (tile < 0)
        return;
    choose(tile);
    if (const auto node = nodeOf(tile); node && event->button() == Qt::RightButton)
        Q_EMIT menuWanted(*node, event->position());
}

void TreemapItem::mouseDoubleClickEvent(QMouseEvent* event) {
    if (isHeld_)
        return;
    if (event->button() == Qt::LeftButton)
        zoomInto(tileAt(event->position()));
    else if (event->button() == Qt::MiddleButton)
        Q_EMIT upWanted();
}

/// A notch is a level. Fine wheels and touchpads send parts of one, which are added up; a flick sends many at
/// once, and still is one level at a time.
void TreemapItem::wheelEvent(QWheelEvent* event) {
    constexpr int notch = 120;
    constexpr quint64 pause = 150;
    const int turned = event->angleDelta().y();
    const auto modifiers = event->modifiers() & ~Qt::KeypadModifier;
    if (map_ == nullptr || turned == 0 || (modifiers != Qt::NoModifier && modifiers != Qt::ControlModifier)) {
        event->ignore();
        return;
    }
    event->accept();
    const bool isPause = lastWheelStep_ && event->timestamp() - *lastWheelStep_ < pause;
    if (isHeld_ || isPause || event->phase() == Qt::ScrollMomentum) {
        wheelTurn_ = 0;
        return;
    }
    wheelTurn_ = (wheelTurn_ < 0) == (turned < 0) ? wheelTurn_ + turned : turned;
    if (std::abs(wheelTurn_) < notch)
        return;
    const bool isForward = wheelTurn_ > 0;
    wheelTurn_ = 0;
    lastWheelStep_ = event->timestamp();
    if (isForward)
        zoomOneLevel(event->position());
    else
        Q_EMIT upWanted();
}

/// Into the folder directly in the one that is shown that has this point.
void TreemapItem::zoomOneLevel(QPointF position) {
    ensureLaidOut();
    const int tile = tileAt(position);
    if (tile < 0 || !isOfThisTree())
        return;
    const auto& content = tiles_[static_cast<std::size_t>(tile)].content;
    const auto* smaller = std::get_if<TreemapTile::SmallerItems>(&content);
    auto node = smaller != nullptr ? std::optional(smaller->parent) : nodeOf(tile);
    while (node && map_->tree().parent(*node) != map_->focus())
        node = map_->tree().parent(*node);
    if (node && TreemapModel::isPlainFolder(map_->tree(), *node))
        Q_EMIT zoomWanted(*node, boxAt(tileOf(*node)));
}

void TreemapItem::hoverEnterEvent(QHoverEvent* event) {
    hoverMoveEvent(event);
}

void TreemapItem::hoverMoveEvent(QHoverEvent* event) {
    pointer_ = event->position();
    if (!isHeld_ && !isStale_)
        setHovered(tileAt(*pointer_));
}

void TreemapItem::hoverLeaveEvent(QHoverEvent* /*event*/) {
    pointer_.reset();
    setHovered(-1);
}

void TreemapItem::move(TileNavigation::Direction direction) {
    if (tiles_.empty())
        return;
    if (current_ < 0) {
        choose(0);
    } else if (const auto next =
                   TileNavigation::neighbour(tiles_, static_cast<std::size_t>(current_), direction)) {
        choose(static_cast<int>(*next));
    }
}

bool TreemapItem::isTyping() const {
    return !typed_.isEmpty() && !sinceTyped_.hasExpired(forgottenAfter);
}

/// Leads to the next item whose name begins with what was typed.
void TreemapItem::type(const QString& text) {
    if (!isTyping())
        typed_.clear();
    typed_ += text;
    sinceTyped_.start();
    // The first letter leads on from the current tile; further ones may keep it.
    const int first = std::max(0, current_) + (typed_.size() == text.size() ? 1 : 0);
    for (int i = 0; i < tileCount(); ++i) {
        const int tile = (first + i) % tileCount();
        const auto name = withoutIsolates(textOf(tiles_[static_cast<std::size_t>(tile)].label));
        if (nodeOf(tile) && name.startsWith(typed_, Qt::CaseInsensitive)) {
            choose(tile);
            return;
        }
    }
}

void TreemapItem::keyPressEvent(QKeyEvent* event) {
    using enum TileNavigation::Direction;
    ensureLaidOut();
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const bool opensMenu = event->key() == Qt::Key_Menu
                           || (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier);
    const bool isOfAll = event->key() == Qt::Key_A && (event->modifiers() & Qt::ControlModifier) != 0;
    const bool isOfRow =
        event->key() == Qt::Key_C && event->modifiers() == (Qt::ControlModifier | Qt::ShiftModifier);
    const bool isCopy = isOfRow || event->matches(QKeySequence::Copy);
    const auto text = event->text();
    const bool isText = (isPlain || event->modifiers() == Qt::ShiftModifier) && !text.isEmpty()
                        && text.front().isPrint() && (event->key() != Qt::Key_Space || isTyping());
    const bool isKnown = isPlain || isText || opensMenu || isOfAll || isCopy;
    if (isHeld_ || map_ == nullptr || !isKnown) {
        event->ignore();
        return;
    }
    isFocusShown_ = true;
    if (opensMenu) {
        openMenu(current_);
    } else if (isText) {
        type(text);
    } else if (isOfAll) {
        if (!event->isAutoRepeat())
            Q_EMIT allWanted((event->modifiers() & Qt::ShiftModifier) == 0);
    } else if (isCopy) {
        if (const auto node = nodeOf(current_))
            Q_EMIT copyWanted(*node, isOfRow);
    } else {
        switch (event->key()) {
        case Qt::Key_Left:
            move(left);
            break;
        case Qt::Key_Right:
            move(right);
            break;
        case Qt::Key_Up:
            move(up);
            break;
        case Qt::Key_Down:
            move(down);
            break;
        case Qt::Key_Home:
            if (!tiles_.empty())
                choose(0);
            break;
        case Qt::Key_End:
            if (!tiles_.empty())
                choose(tileCount() - 1);
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!event->isAutoRepeat())
                zoomInto(current_);
            break;
        case Qt::Key_Space:
            if (const auto node = nodeOf(current_); node && !event->isAutoRepeat()) {
                choose(current_);
                Q_EMIT tickWanted(*node);
            }
            break;
        case Qt::Key_Backspace:
            Q_EMIT upWanted();
            break;
        default:
            event->ignore();
            return;
        }
    }
    Q_EMIT marksChanged();
    Q_EMIT statusChanged();
}

void TreemapItem::focusInEvent(QFocusEvent* event) {
    QQuickPaintedItem::focusInEvent(event);
    ensureLaidOut();
    isFocusShown_ = isByKeyboard(event->reason());
    if (current_ < 0 && !tiles_.empty())
        current_ = 0;
    Q_EMIT marksChanged();
    Q_EMIT statusChanged();
    // Of the map itself Qt tells.
    saidFolder_ = map_ == nullptr ? 0 : map_->focus();
    saying_.start();
}

void TreemapItem::focusOutEvent(QFocusEvent* event) {
    QQuickPaintedItem::focusOutEvent(event);
    Q_EMIT marksChanged();
    Q_EMIT statusChanged();
}

void TreemapItem::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickPaintedItem::geometryChange(now, before);
    if (now.size() != before.size())
        invalidate();
}

void TreemapItem::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemDevicePixelRatioHasChanged || (change == ItemVisibleHasChanged && data.boolValue))
        invalidate();
    QQuickPaintedItem::itemChange(change, data);
}

} // namespace orbel

#pragma once

#include "Compare/NodeChanges.h"
#include "Map/MapColors.h"
#include "Map/MapFilter.h"
#include "Map/TileFace.h"

#include <array>
#include <functional>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <span>
#include <string_view>
#include <vector>

namespace orbel {

/// Draws the tiles of a map, in device pixels. Made for one painting.
class TreemapPainter {
public:
    struct Style {
        const MapColors& colors;
        QString family;
        double scale = 1;               ///< device pixels a point
        const FileTree* tree = nullptr; ///< of the tiles; null when there are none
        MapFilter filter{};
        const std::vector<NodeChange>* changes = nullptr; ///< by node, to colour by; null: by kind
        unsigned changesShown = 0; ///< one bit for each change that is drawn in full; 0: all are
        std::function<bool(NodeIndex)> isTicked{};
    };

    /// `painter` draws in device pixels; it and `style` must live as long as this.
    TreemapPainter(QPainter& painter, const Style& style);

    /// In the order of the list: children after their folder.
    void draw(std::span<const TreemapTile> tiles);

    /// What the tile of a node is coloured by.
    struct Look {
        ContentRow::Paint paint;
        std::string_view glyph;
        std::size_t number; ///< of the kind or the change
    };
    static Look lookOf(NodeIndex node, const Style& style);

private:
    void drawFolder(const TreemapTile& tile, const TileBox& box);
    void drawGround(const TreemapTile& tile, const QRect& rect, bool isPale);
    bool isPale(const TreemapTile& tile) const;
    Look lookOf(const TreemapTile& tile) const;
    void drawWords(const TreemapTile& tile, const TileFace& face, const QRect& rect, bool isTicked);
    void drawSmallerItems(const TreemapTile& tile, const TileFace& face, const QRect& rect);
    void drawLine(const QString& words, const QFont& font, const QFontMetricsF& metrics, const QRectF& line,
                  Qt::Alignment side, QRgb color);
    void drawGlyph(const Look& look, const QRect& rect, const TileFace& face);
    void drawTick(const QRect& rect);

    double px(double points) const { return points * style_.scale; }
    const QFont& font(const TileFace& face, bool isBold) const;
    const QFontMetricsF& metrics(const TileFace& face, bool isBold) const;

    QPainter& painter_;
    const Style& style_;
    const MapColors& colors_;
    // Small and medium, regular and bold.
    std::array<QFont, 4> fonts_;
    std::vector<QFontMetricsF> metrics_;
    QBrush hatch_;
    std::array<QImage, allContentKinds.size()> glyphs_; ///< by the number of a look
};

} // namespace orbel

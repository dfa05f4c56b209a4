#include "Views/TreemapPainter.h"

#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/ChangeTable.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"

#include <algorithm>
#include <cmath>
#include <QSvgRenderer>
#include <utility>

namespace orbel {

namespace {

constexpr double smallSize = 11;
constexpr double mediumSize = 12;

QRgb opaque(Rgb color) {
    return 0xFF000000U | color;
}

QFont fontOf(const QString& family, double pixels, bool isBold) {
    QFont font(family);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
    font.setBold(isBold);
    return font;
}

/// One line from corner to corner of a square tile, and its ends in the two other corners, so that tiles
/// join.
QBrush hatching(const MapColors& colors, double scale) {
    const int side = std::max(2, static_cast<int>(std::lround(10 * scale)));
    QImage tile(side, side, QImage::Format_RGB32);
    tile.fill(opaque(colors.hatchGround));
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(opaque(colors.hatch)), scale));
    for (const int offset : {-side, 0, side})
        painter.drawLine(QPointF(offset, side), QPointF(offset + side, 0));
    painter.end();
    return {tile};
}

} // namespace

TreemapPainter::TreemapPainter(QPainter& painter, const Style& style)
    : painter_(painter),
      style_(style),
      colors_(style.colors),
      fonts_{fontOf(style.family, px(smallSize), false), fontOf(style.family, px(smallSize), true),
             fontOf(style.family, px(mediumSize), false), fontOf(style.family, px(mediumSize), true)},
      hatch_(hatching(colors_, style.scale)) {
    for (const QFont& font : fonts_)
        metrics_.emplace_back(font);
}

void TreemapPainter::draw(std::span<const TreemapTile> tiles) {
    painter_.setPen(Qt::NoPen);
    for (const TreemapTile& tile : tiles) {
        const TileBox box = snapped(tile.rect, style_.scale);
        if (box.width <= 0 || box.height <= 0)
            continue;
        if (tile.showsChildren) {
            drawFolder(tile, box);
            continue;
        }
        const QRect rect(box.x, box.y, box.width, box.height);
        const auto* node = std::get_if<TreemapTile::Node>(&tile.content);
        const bool isPale = TreemapPainter::isPale(tile);
        drawGround(tile, rect, isPale);
        const bool isTicked = node != nullptr && style_.isTicked && style_.isTicked(node->index);
        if (!isPale)
            drawWords(tile, TileFace::of(tile, box.width / style_.scale, box.height / style_.scale), rect,
                      isTicked);
        if (isTicked)
            drawTick(rect);
    }
}

void TreemapPainter::drawFolder(const TreemapTile& tile, const TileBox& box) {
    const QRect rect(box.x, box.y, box.width, box.height);
    const int edge = std::max(1, static_cast<int>(std::lround(style_.scale)));
    painter_.fillRect(rect.adjusted(0, 0, edge, edge),
                      QColor(opaque(tile.depth == 0 ? colors_.edge : colors_.line)));
    painter_.fillRect(rect, QColor(opaque(colors_.frame(tile.depth))));
    const auto face = TileFace::of(tile, box.width / style_.scale, box.height / style_.scale);
    if (!face.showsName)
        return;
    const double inset = px(face.nameInset);
    QRectF line(rect.x() + inset, rect.y() + px(face.topInset), rect.width() - 2 * inset,
                px(face.lineHeight));
    if (face.showsSize) {
        const QString size = ByteFigure(tile.bytes).text();
        const auto& regular = metrics(face, false);
        drawLine(size, font(face, false), regular, line, Qt::AlignRight, opaque(colors_.secondInk));
        line.setWidth(line.width() - regular.horizontalAdvance(size) - px(8));
    }
    drawLine(visibleTextOf(tile.label), font(face, face.isBold), metrics(face, face.isBold), line,
             Qt::AlignLeft, opaque(colors_.ink));
}

void TreemapPainter::drawGround(const TreemapTile& tile, const QRect& rect, bool isPale) {
    if (std::holds_alternative<TreemapTile::NotMeasured>(tile.content)) {
        painter_.setBrushOrigin(rect.topLeft());
        painter_.fillRect(rect, hatch_);
        return;
    }
    QColor color(opaque(std::holds_alternative<TreemapTile::SmallerItems>(tile.content)
                            ? colors_.hatchGround
                            : lookOf(tile).paint.fill));
    if (isPale)
        color.setAlphaF(0.22F);
    painter_.fillRect(rect, color);
}

bool TreemapPainter::isPale(const TreemapTile& tile) const {
    const bool isByChange = style_.changes != nullptr && style_.changesShown != 0;
    if (std::holds_alternative<TreemapTile::NotMeasured>(tile.content)
        || !(style_.filter.isSet() || isByChange))
        return false;
    const auto* const node = std::get_if<TreemapTile::Node>(&tile.content);
    return node == nullptr || !style_.filter.shows(*style_.tree, node->index)
           || (isByChange && (style_.changesShown >> lookOf(tile).number & 1U) == 0);
}

TreemapPainter::Look TreemapPainter::lookOf(NodeIndex node, const Style& style) {
    if (style.changes != nullptr) {
        const auto& row = rowOf((*style.changes)[node]);
        return {.paint = style.colors.isDark ? row.dark : row.light,
                .glyph = row.glyph,
                .number = static_cast<std::size_t>(row.change)};
    }
    const auto kind = TreemapModel::contentKind(*style.tree, node);
    return {
        .paint = style.colors.of(kind), .glyph = rowOf(kind).glyph, .number = static_cast<std::size_t>(kind)};
}

/// Of the tile of a node.
TreemapPainter::Look TreemapPainter::lookOf(const TreemapTile& tile) const {
    return lookOf(std::get<TreemapTile::Node>(tile.content).index, style_);
}

void TreemapPainter::drawWords(const TreemapTile& tile, const TileFace& face, const QRect& rect,
                               bool isTicked) {
    const double widthInPoints = rect.width() / style_.scale;
    if (std::holds_alternative<TreemapTile::SmallerItems>(tile.content)) {
        drawSmallerItems(tile, face, rect);
        return;
    }
    // Beside a tick there must be room left for a name.
    if (!face.showsName || (isTicked && widthInPoints < 64))
        return;
    const bool isNode = std::holds_alternative<TreemapTile::Node>(tile.content);
    const QRgb color = opaque(isNode ? lookOf(tile).paint.label : colors_.secondInk);
    const auto& bold = metrics(face, face.isBold);
    const double inset = px(face.nameInset);
    const double lineHeight = px(face.lineHeight);
    const QRectF first(rect.x() + inset, rect.y() + px(face.topInset),
                       rect.width() - 2 * inset - (isTicked ? px(28) : 0), lineHeight);
    const QRectF second(rect.x() + inset, first.bottom(), rect.width() - 2 * inset, lineHeight);
    const QString name = visibleTextOf(tile.label);
    const QString below = face.showsSize ? ByteFigure(tile.bytes).text() : QString();
    if (std::holds_alternative<TreemapTile::NotMeasured>(tile.content)) {
        const double width =
            std::max(bold.horizontalAdvance(name), metrics(face, false).horizontalAdvance(below)) + px(6);
        const QRectF plate(first.x() - px(3), first.y() - px(1), std::min(width, rect.width() - inset),
                           lineHeight * (below.isEmpty() ? 1 : 2) + px(2));
        painter_.fillRect(plate, QColor(opaque(colors_.hatchGround)));
    }
    drawLine(name, font(face, face.isBold), bold, first, Qt::AlignLeft, color);
    if (!below.isEmpty())
        drawLine(below, font(face, false), metrics(face, false), second, Qt::AlignLeft, color);
    if (face.glyphSize > 0)
        drawGlyph(lookOf(tile), rect, face);
}

/// In as many lines as it takes, and as much of it as fits whole: a number cut short would be another number.
void TreemapPainter::drawSmallerItems(const TreemapTile& tile, const TileFace& face, const QRect& rect) {
    const auto whole = smallerItemsText(std::get<TreemapTile::SmallerItems>(tile.content).count);
    const auto words = whole.split(QLatin1Char(' '));
    const auto numberAndWord = words.at(0) + QLatin1Char(' ') + words.at(1);
    const auto number = QLatin1Char('+') + words.at(0);
    const auto size = ByteFigure(tile.bytes).text();
    const auto& bold = metrics(face, face.isBold);
    const auto& regular = metrics(face, false);
    const double lineHeight = px(face.lineHeight);
    // Half of the room to the left of the words is enough to their right.
    const double width = rect.width() - 1.5 * px(face.nameInset);
    const double height = rect.height() - px(face.topInset);
    const auto fits = [&](const QStringList& lines) {
        bool isFirst = true;
        return lineHeight * static_cast<double>(lines.size()) <= height
               && std::ranges::all_of(lines, [&](const QString& line) {
                      return std::exchange(isFirst, false) ? bold.horizontalAdvance(line) <= width
                                                           : regular.horizontalAdvance(line) <= width;
                  });
    };
    for (const auto& lines : {QStringList{whole, size},
                              {whole},
                              {numberAndWord, words.at(2), size},
                              {numberAndWord, words.at(2)},
                              words + QStringList{size},
                              words,
                              {number, size},
                              {number}}) {
        if (!fits(lines))
            continue;
        QRectF line(rect.x() + px(face.nameInset), rect.y() + px(face.topInset), width, lineHeight);
        for (const auto& shown : lines) {
            const bool isBold = face.isBold && &shown == &lines.front();
            drawLine(shown, font(face, isBold), metrics(face, isBold), line, Qt::AlignLeft,
                     opaque(colors_.secondInk));
            line.translate(0, lineHeight);
        }
        return;
    }
}

void TreemapPainter::drawLine(const QString& words, const QFont& font, const QFontMetricsF& metrics,
                              const QRectF& line, Qt::Alignment side, QRgb color) {
    const QString fitting = metrics.elidedText(words, Qt::ElideRight, line.width());
    if (fitting.isEmpty() || fitting == QStringLiteral("…"))
        return;
    const double x = side == Qt::AlignRight ? line.right() - metrics.horizontalAdvance(fitting) : line.left();
    const double baseline = line.top() + (line.height() - metrics.height()) / 2 + metrics.ascent();
    painter_.setFont(font);
    painter_.setPen(QColor(color));
    painter_.drawText(QPointF(std::round(x), std::round(baseline)), isolated(fitting));
    painter_.setPen(Qt::NoPen);
}

void TreemapPainter::drawGlyph(const Look& look, const QRect& rect, const TileFace& face) {
    QImage& glyph = glyphs_.at(look.number);
    const int side = static_cast<int>(std::lround(px(face.glyphSize)));
    if (glyph.isNull()) {
        const auto picture =
            QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 16 16'><path d='%1' "
                           "fill='none' stroke='%2' stroke-width='1.4' stroke-linecap='round' "
                           "stroke-linejoin='round'/></svg>")
                .arg(textOf(look.glyph), QColor(opaque(look.paint.label)).name());
        glyph = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
        glyph.fill(Qt::transparent);
        QPainter painter(&glyph);
        QSvgRenderer(picture.toUtf8()).render(&painter);
    }
    const int inset = static_cast<int>(std::lround(px(face.glyphInset)));
    painter_.drawImage(rect.right() + 1 - inset - side, rect.bottom() + 1 - inset - side, glyph);
}

void TreemapPainter::drawTick(const QRect& rect) {
    const double side = px(16);
    const double inset = px(5);
    if (rect.width() < side + 2 || rect.height() < side + 2)
        return;
    const double fromEdge = std::min({inset, rect.width() - side - 1, rect.height() - side - 1});
    const QRectF box(rect.right() + 1 - fromEdge - side, rect.y() + fromEdge, side, side);
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.setPen(QPen(QColor(opaque(colors_.surface)), px(1)));
    painter_.setBrush(QColor(opaque(colors_.ink)));
    painter_.drawRoundedRect(box.adjusted(px(-0.5), px(-0.5), px(0.5), px(0.5)), px(4), px(4));
    painter_.setPen(
        QPen(QColor(opaque(colors_.tickMark)), px(1.9), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const auto at = [&](double x, double y) { return QPointF(box.x() + px(x), box.y() + px(y)); };
    painter_.drawPolyline(QPolygonF{at(3.6, 8.4), at(6.4, 11), at(12.4, 5)});
    painter_.restore();
}

const QFont& TreemapPainter::font(const TileFace& face, bool isBold) const {
    return fonts_.at((face.nameSize > smallSize ? 2U : 0U) + (isBold ? 1U : 0U));
}

const QFontMetricsF& TreemapPainter::metrics(const TileFace& face, bool isBold) const {
    return metrics_[(face.nameSize > smallSize ? 2U : 0U) + (isBold ? 1U : 0U)];
}

} // namespace orbel

#include "Export/MapSvg.h"

#include "Export/SvgText.h"
#include "Map/MapColors.h"
#include "Map/TileFace.h"
#include "Map/TreemapModel.h"
#include "Safety/ByteFormat.h"
#include "Scan/KindTotals.h"
#include "Util/ShownText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

namespace orbel {

namespace {

constexpr int headHeight = 60;
constexpr int legendRowHeight = 40;
constexpr int pagePadding = 12;

std::string hex(Rgb color) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%06X", color);
    return text.data();
}

std::string pixels(double value) {
    return std::to_string(std::lround(value));
}

std::string at(double x, double y) {
    return " x=\"" + pixels(x) + "\" y=\"" + pixels(y) + "\"";
}

std::string sized(double width, double height) {
    return " width=\"" + pixels(width) + "\" height=\"" + pixels(height) + "\"";
}

std::string shown(std::string_view name) {
    return isolatedText(visibleText(name));
}

/// One entry of the legend, and where it stands.
struct LegendItem {
    ContentKind kind;
    std::string words;
    std::string size;
    double width = 0;
    double x = 0;
    int row = 0;
};

class Drawing {
public:
    explicit Drawing(const MapSvg::Picture& picture) : picture_(picture) {}

    std::string text() {
        const auto legend = legendItems();
        const int legendHeight = legend.empty() ? 0 : (legend.back().row + 1) * legendRowHeight;
        const double width = picture_.size.width;
        const double mapBottom = picture_.size.height - legendHeight;
        begin();
        out_ += "<rect" + sized(width, picture_.size.height) + " fill=\"" + page + "\"/>\n";
        addHead();
        out_ += "<rect" + at(0, headHeight) + sized(width, mapBottom - headHeight) + " fill=\""
                + hex(colors_.ground) + "\"/>\n<path d=\"M0 " + pixels(headHeight) + ".5H" + pixels(width)
                + "M0 " + pixels(mapBottom) + ".5H" + pixels(width) + "\" stroke=\"" + hex(colors_.line)
                + "\"/>\n";
        const TreemapRect map{.x = 0, .y = headHeight, .width = width, .height = mapBottom - headHeight};
        addTiles(map.insetBy(pagePadding, pagePadding));
        for (const auto& item : legend)
            addLegendItem(item, mapBottom + item.row * legendRowHeight);
        return out_ + "</svg>\n";
    }

private:
    static constexpr const char* page = "#F2F5F5";

    void begin() {
        const auto width = pixels(picture_.size.width);
        const auto height = pixels(picture_.size.height);
        out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\""
               + width + "\" height=\"" + height + "\" viewBox=\"0 0 " + width + " " + height
               + "\" role=\"img\">\n<title>" + xmlText(shown(picture_.title)) + "</title>\n<style>\n"
               + R"(text{font:11px "Noto Sans","Open Sans",sans-serif;fill:)" + hex(colors_.ink) + "}\n"
               + ".m{font-size:12px}.b{font-weight:bold}.h{font-size:20px;font-weight:bold}\n"
               + ".s{fill:" + hex(colors_.secondInk) + "}.e{text-anchor:end}\n"
               + ".g{fill:none;stroke-width:1.4;stroke-linecap:round;stroke-linejoin:round}\n";
        for (const ContentKind kind : allContentKinds) {
            const auto& color = colors_.of(kind);
            const auto number = std::to_string(static_cast<int>(kind));
            out_.append(".k").append(number).append("{fill:").append(hex(color.fill));
            out_.append("}.l").append(number).append("{fill:").append(hex(color.label)).append("}\n");
        }
        out_ += "</style>\n<defs><pattern id=\"hatch\" width=\"10\" height=\"10\" "
                "patternUnits=\"userSpaceOnUse\"><rect width=\"10\" height=\"10\" fill=\""
                + hex(colors_.hatchGround) + R"("/><path d="M-1 1L1-1M0 10L10 0M9 11L11 9" stroke=")"
                + hex(colors_.hatch) + "\"/></pattern></defs>\n";
    }

    void addHead() {
        const double room = picture_.size.width - 2.0 * 24;
        addText("h", 24, 28, elided(visibleText(picture_.title), {.size = 20, .isBold = true}, room));
        addText("m s", 24, 47, elided(picture_.remark, {.size = 12, .isBold = false}, room));
    }

    void addText(const std::string& style, double x, double y, const std::string& words) {
        out_ += "<text" + (style.empty() ? "" : " class=\"" + style + "\"") + at(x, y) + ">"
                + xmlText(isolatedText(words)) + "</text>\n";
    }

    void addTiles(const TreemapRect& area) {
        const auto tiles = TreemapModel::tiles(picture_.tree, 0, area, std::numeric_limits<int>::max(),
                                               picture_.coverage, std::numeric_limits<std::size_t>::max());
        total_ = std::max(picture_.tree.allocated(0), picture_.coverage ? picture_.coverage->used : 0);
        for (const TreemapTile& tile : tiles) {
            const TileBox box = snapped(tile.rect);
            if (box.width > 0 && box.height > 0)
                addTile(tile, box);
        }
        if (tiles.empty())
            addText("m s", area.x, area.y + 16, "Nothing here takes up space on the disk.");
    }

    void addTile(const TreemapTile& tile, const TileBox& box) {
        out_ += "<g><title>" + xmlText(descriptionOf(tile)) + "</title>";
        const bool isMerged = std::holds_alternative<TreemapTile::SmallerItems>(tile.content);
        const bool isNotMeasured = std::holds_alternative<TreemapTile::NotMeasured>(tile.content);
        const std::string rect = "<rect" + at(box.x, box.y) + sized(box.width, box.height);
        if (tile.showsChildren) {
            // The colour of the edge shows where the ground leaves the gap.
            out_ += "<rect" + at(box.x, box.y) + sized(box.width + 1, box.height + 1) + " fill=\""
                    + hex(tile.depth == 0 ? colors_.edge : colors_.line) + "\"/>" + rect + " fill=\""
                    + hex(colors_.frame(tile.depth)) + "\"/>";
        } else if (isNotMeasured) {
            out_ += rect + " fill=\"url(#hatch)\"/>";
        } else if (isMerged) {
            out_ += rect + " fill=\"" + hex(colors_.hatchGround) + "\"/>";
        } else {
            out_ += rect + " class=\"k" + std::to_string(static_cast<int>(kindOf(tile))) + "\"/>";
        }
        addWords(tile, box);
        out_ += "</g>\n";
    }

    ContentKind kindOf(const TreemapTile& tile) const {
        const auto* const node = std::get_if<TreemapTile::Node>(&tile.content);
        return node == nullptr ? ContentKind::other : TreemapModel::contentKind(picture_.tree, node->index);
    }

    void addWords(const TreemapTile& tile, const TileBox& box) {
        const auto face = TileFace::of(tile, box.width, box.height);
        if (!face.showsName)
            return;
        // Clipped by a frame of its own: the letters of the font that is found may be wider than reckoned.
        out_ += "<svg" + at(box.x, box.y) + sized(box.width, box.height) + ">";
        if (face.style == TileFace::Style::strip)
            addStripWords(tile, face, box.width);
        else
            addTileWords(tile, face, box);
        out_ += "</svg>";
    }

    void addStripWords(const TreemapTile& tile, const TileFace& face, double width) {
        const double baseline = face.topInset + face.lineHeight - 3;
        double room = width - 2 * face.nameInset;
        if (face.showsSize) {
            const std::string size = ByteFormat::string(tile.bytes);
            addText("s e", width - face.nameInset, baseline, size);
            room -= textWidth(size, {.size = face.nameSize, .isBold = false}) + 8;
        }
        addText(face.isBold ? "b" : "", face.nameInset, baseline,
                elided(visibleText(tile.label), {.size = face.nameSize, .isBold = face.isBold}, room));
    }

    void addTileWords(const TreemapTile& tile, const TileFace& face, const TileBox& box) {
        const TextFont nameFont{.size = face.nameSize, .isBold = face.isBold};
        const TextFont sizeFont{.size = face.nameSize, .isBold = false};
        const double room = box.width - 2 * face.nameInset;
        const auto label = visibleText(tile.label);
        std::string name = elided(label, nameFont, room);
        std::string below = face.showsSize ? ByteFormat::string(tile.bytes) : "";
        if (name != label && std::holds_alternative<TreemapTile::SmallerItems>(tile.content)) {
            // A number cut short would be another number.
            name = label.substr(0, label.rfind(' '));
            below = "items";
            if (!face.showsSize || textWidth(name, nameFont) > room)
                return;
        }
        if (std::holds_alternative<TreemapTile::NotMeasured>(tile.content))
            out_ += "<rect" + at(face.nameInset - 3, face.topInset - 1)
                    + sized(std::max(textWidth(name, nameFont), textWidth(below, sizeFont)) + 6,
                            face.lineHeight * (below.empty() ? 1 : 2) + 3)
                    + " fill=\"" + hex(colors_.hatchGround) + "\"/>";
        const std::string style = std::string(face.nameSize > 11 ? "m " : "")
                                  + (std::holds_alternative<TreemapTile::Node>(tile.content)
                                         ? "l" + std::to_string(static_cast<int>(kindOf(tile)))
                                         : "s");
        const double baseline = face.topInset + face.lineHeight - 3;
        addText(face.isBold ? style + " b" : style, face.nameInset, baseline, name);
        if (!below.empty())
            addText(style, face.nameInset, baseline + face.lineHeight, below);
        if (face.glyphSize > 0)
            addGlyph(kindOf(tile), box.width - face.glyphInset - face.glyphSize,
                     box.height - face.glyphInset - face.glyphSize, face.glyphSize);
    }

    void addGlyph(ContentKind kind, double x, double y, double side) {
        out_ += R"(<path class="g" transform="translate()" + pixels(x) + " " + pixels(y) + ")scale("
                + (side > 12 ? ".875" : ".75") + ")\" stroke=\"" + hex(colors_.of(kind).label) + "\" d=\""
                + std::string(rowOf(kind).glyph) + "\"/>";
    }

    /// "Videos/Kilpisjärvi, 14.2 GB, 4 %"
    std::string descriptionOf(const TreemapTile& tile) const {
        std::string words = shown(tile.label);
        const FileTree& tree = picture_.tree;
        const std::size_t root = tree.rootPath == "/" ? 1 : tree.rootPath.size() + 1;
        if (const auto* node = std::get_if<TreemapTile::Node>(&tile.content))
            words = shown(tree.walkedPath(node->index).substr(root));
        else if (const auto* merged = std::get_if<TreemapTile::SmallerItems>(&tile.content);
                 merged != nullptr && merged->parent != 0)
            words += " in " + shown(tree.walkedPath(merged->parent).substr(root));
        return words + ", " + ByteFormat::string(tile.bytes) + ", " + percent(tile.bytes);
    }

    std::string percent(std::uint64_t bytes) const {
        const double share = 100.0 * static_cast<double>(bytes) / static_cast<double>(total_);
        const auto tenths = std::lround(share * 10);
        return share >= 10 ? std::to_string(std::lround(share)) + " %"
                           : std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " %";
    }

    std::vector<LegendItem> legendItems() const {
        constexpr double gap = 24;
        std::vector<LegendItem> items;
        const auto totals = kindTotals(picture_.tree, 0);
        double x = gap;
        int row = 0;
        for (const ContentKind kind : shownContentKinds) {
            const auto bytes = totals[static_cast<std::size_t>(kind)];
            if (bytes == 0)
                continue;
            LegendItem item{
                .kind = kind, .words = std::string(title(kind)), .size = ByteFormat::string(bytes)};
            item.width = 26 + textWidth(item.words, legendFont) + 6 + textWidth(item.size, legendFont);
            if (x > gap && x + item.width > picture_.size.width - gap) {
                x = gap;
                ++row;
            }
            item.x = x;
            item.row = row;
            x += item.width + gap;
            items.push_back(std::move(item));
        }
        return items;
    }

    void addLegendItem(const LegendItem& item, double top) {
        const double y = top + (legendRowHeight - 18) / 2.0;
        out_ += "<rect" + at(item.x, y) + sized(18, 18) + R"( rx="4" class="k)"
                + std::to_string(static_cast<int>(item.kind)) + "\"/>";
        addGlyph(item.kind, item.x + 3, y + 3, 12);
        out_ += R"(<text class="m")" + at(item.x + 26, y + 13) + ">" + item.words
                + R"(<tspan class="s" dx="6">)" + item.size + "</tspan></text>\n";
    }

    static constexpr TextFont legendFont{.size = 12, .isBold = false};

    const MapSvg::Picture& picture_;
    const MapColors& colors_ = MapColors::light();
    std::uint64_t total_ = 0;
    std::string out_;
};

} // namespace

std::string MapSvg::render(const Picture& picture) {
    return Drawing(picture).text();
}

} // namespace orbel

#include "Models/MapPalette.h"

#include "Map/MapColors.h"
#include "Models/ChangeTable.h"
#include "Models/Wording.h"

#include <QColor>

namespace orbel {

namespace {

QVariant colorOf(Rgb color) {
    return QColor::fromRgb(color);
}

} // namespace

QStringList MapPalette::glyphs() const {
    QStringList glyphs;
    for (const auto kind : allContentKinds)
        glyphs << textOf(rowOf(kind).glyph);
    return glyphs;
}

QStringList MapPalette::changeGlyphs() const {
    QStringList glyphs;
    for (const auto& row : changeTable)
        glyphs << textOf(row.glyph);
    return glyphs;
}

QVariantMap MapPalette::colors(bool dark, bool highContrast) const {
    const auto& colors = MapColors::of(dark, highContrast);
    QVariantList frames;
    for (const auto frame : colors.frames)
        frames << colorOf(frame);
    QVariantList fills;
    QVariantList labels;
    for (const auto kind : allContentKinds) {
        fills << colorOf(colors.of(kind).fill);
        labels << colorOf(colors.of(kind).label);
    }
    QVariantList changeFills;
    QVariantList changeLabels;
    for (const auto& row : changeTable) {
        changeFills << colorOf((dark ? row.dark : row.light).fill);
        changeLabels << colorOf((dark ? row.dark : row.light).label);
    }
    return {{QStringLiteral("ground"), colorOf(colors.ground)},
            {QStringLiteral("edge"), colorOf(colors.edge)},
            {QStringLiteral("hatch"), colorOf(colors.hatch)},
            {QStringLiteral("hatchGround"), colorOf(colors.hatchGround)},
            {QStringLiteral("frames"), frames},
            {QStringLiteral("fills"), fills},
            {QStringLiteral("labels"), labels},
            {QStringLiteral("changeFills"), changeFills},
            {QStringLiteral("changeLabels"), changeLabels}};
}

} // namespace orbel

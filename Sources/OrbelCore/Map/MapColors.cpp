#include "Map/MapColors.h"

namespace orbel {

namespace {

MapColors withContrast(MapColors colors, Rgb ink) {
    colors.edge = colors.line = colors.hatch = colors.ink = colors.secondInk = ink;
    return colors;
}

} // namespace

const MapColors& MapColors::light() {
    static constexpr MapColors colors{
        .isDark = false,
        .frames = {0xDCE3E3, 0xE7ECEC, 0xF0F3F3},
        .ground = 0xFFFFFF,
        .edge = 0xB3BFBE,
        .line = 0xD3DBDB,
        .hatch = 0xB9C4C4,
        .hatchGround = 0xE6EBEB,
        .ink = 0x15211F,
        .secondInk = 0x465453,
        .surface = 0xFFFFFF,
        .tickMark = 0xFFFFFF,
    };
    return colors;
}

const MapColors& MapColors::dark() {
    static constexpr MapColors colors{
        .isDark = true,
        .frames = {0x2B3435, 0x232B2C, 0x1D2425},
        .ground = 0x101516,
        .edge = 0x3E4A4B,
        .line = 0x313B3C,
        .hatch = 0x3D4849,
        .hatchGround = 0x1C2324,
        .ink = 0xE7EDEC,
        .secondInk = 0xB0BCBB,
        .surface = 0x1A2021,
        .tickMark = 0x12191A,
    };
    return colors;
}

const MapColors& MapColors::of(bool isDark, bool isContrastHigh) {
    static const auto lightContrast = withContrast(light(), 0x000000);
    static const auto darkContrast = withContrast(dark(), 0xFFFFFF);
    if (isContrastHigh)
        return isDark ? darkContrast : lightContrast;
    return isDark ? dark() : light();
}

} // namespace orbel

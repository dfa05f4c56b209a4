#include "Support/OklabDistance.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace orbel::test {

namespace {

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

constexpr std::array<Matrix, 4> allSights{{
    {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
    {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}},
    {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}},
    {{{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}},
}};

constexpr Matrix conesOfLight{{{0.4122214708, 0.5363325363, 0.0514459929},
                               {0.2119034982, 0.6806995451, 0.1073969566},
                               {0.0883024619, 0.2817188376, 0.6299787005}}};
constexpr Matrix labOfCones{{{0.2104542553, 0.7936177850, -0.0040720468},
                             {1.9779984951, -2.4285922050, 0.4505937099},
                             {0.0259040371, 0.7827717662, -0.8086757660}}};

Triple product(const Matrix& matrix, const Triple& vector) {
    Triple result{};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            result.at(row) += matrix.at(row).at(column) * vector.at(column);
    return result;
}

Triple lightOf(Rgb color) {
    Triple light{};
    for (unsigned i = 0; i < 3; ++i) {
        const double value = static_cast<double>(color >> (16 - 8 * i) & 0xFFU) / 255;
        light.at(i) = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    }
    return light;
}

Triple seen(Rgb color, const Matrix& sight) {
    auto light = product(sight, lightOf(color));
    for (double& value : light)
        value = std::clamp(value, 0.0, 1.0);
    auto cones = product(conesOfLight, light);
    for (double& value : cones)
        value = std::cbrt(value);
    return product(labOfCones, cones);
}

} // namespace

double smallestDistance(std::span<const Rgb> colors, std::size_t sights) {
    double smallest = std::numeric_limits<double>::max();
    for (const Matrix& sight : std::span(allSights).first(sights))
        for (std::size_t a = 0; a < colors.size(); ++a)
            for (std::size_t b = 0; b < a; ++b) {
                const auto one = seen(colors[a], sight);
                const auto other = seen(colors[b], sight);
                smallest =
                    std::min(smallest, std::hypot(one[0] - other[0], one[1] - other[1], one[2] - other[2]));
            }
    return smallest;
}

} // namespace orbel::test

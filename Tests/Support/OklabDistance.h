#pragma once

#include "Scan/FileKind.h"

#include <cstddef>
#include <span>

namespace orbel::test {

/// The smallest distance in OKLab between any two of the colours, as eyes see them that are normal,
/// deuteranopic, protanopic and tritanopic (Machado, Oliveira and Fernandes 2009, severity 1): the first
/// `sights` of these.
double smallestDistance(std::span<const Rgb> colors, std::size_t sights = 4);

} // namespace orbel::test

#pragma once

#include "Util/TextMatcher.h"

#include <algorithm>
#include <QString>

namespace orbel {

/// The first of `count` rows after `row`, going round, whose name begins with the letters, in either case; -1
/// when there is none. `nameOf` gives the bytes of a row's name.
template <class NameOf>
int nextRowNamed(const QString& letters, int row, int count, NameOf nameOf) {
    const auto wanted = caseFolded(letters.toStdString());
    for (int step = 1; step <= count; ++step) {
        const int next = (std::max(row, -1) + step) % count;
        if (caseFolded(nameOf(next)).starts_with(wanted))
            return next;
    }
    return -1;
}

} // namespace orbel

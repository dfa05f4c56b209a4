#include "Models/KindTotalsModel.h"

#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <algorithm>
#include <functional>

namespace orbel {

namespace {

std::uint64_t bytesOf(const KindTotals& totals, FileKind kind) {
    return totals.at(static_cast<std::size_t>(kind));
}

/// Of the kinds that take up something, in the order given.
std::vector<KindTotal> rowsOf(const KindTotals& totals, auto kinds) {
    const auto largest = std::ranges::max(totals);
    std::vector<KindTotal> rows;
    for (const FileKind kind : kinds)
        if (const auto bytes = bytesOf(totals, kind); bytes > 0)
            rows.push_back({.kind = static_cast<int>(kind),
                            .title = textOf(title(kind)),
                            .size = ByteFigure(bytes).text(),
                            .fraction = fractionOf(bytes, largest)});
    return rows;
}

} // namespace

void KindTotalsModel::setTotals(const KindTotals& totals) {
    auto kinds = allFileKinds;
    std::ranges::stable_sort(kinds, std::greater{}, [&](FileKind kind) { return bytesOf(totals, kind); });
    setRows(rowsOf(totals, kinds));
}

void MapLegendModel::setTotals(const KindTotals& totals) {
    totals_ = totals;
    show();
}

void MapLegendModel::setChosen(unsigned kinds) {
    chosen_ = kinds;
    show();
}

void MapLegendModel::show() {
    auto rows = rowsOf(totals_, shownFileKinds);
    for (auto& row : rows)
        row.active = (chosen_ >> static_cast<unsigned>(row.kind) & 1U) != 0;
    setRows(std::move(rows));
}

} // namespace orbel

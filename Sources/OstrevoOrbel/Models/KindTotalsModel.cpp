#include "Models/KindTotalsModel.h"

#include "Models/ByteFigure.h"
#include "Models/ChangeTable.h"
#include "Models/Wording.h"

#include <algorithm>
#include <functional>

namespace orbel {

namespace {

std::uint64_t bytesOf(const KindTotals& totals, ContentKind kind) {
    return totals.at(static_cast<std::size_t>(kind));
}

/// Of the kinds that take up something, the largest first, equal ones in the order of bars.
std::vector<KindTotal> rowsOf(const KindTotals& totals) {
    auto kinds = shownContentKinds;
    std::ranges::stable_sort(kinds, std::greater{}, [&](ContentKind kind) { return bytesOf(totals, kind); });
    const auto largest = bytesOf(totals, kinds.front());
    std::vector<KindTotal> rows;
    for (const ContentKind kind : kinds)
        if (const auto bytes = bytesOf(totals, kind); bytes > 0)
            rows.push_back({.kind = static_cast<int>(kind),
                            .title = textOf(title(kind)),
                            .size = ByteFigure(bytes).text(),
                            .fraction = fractionOf(bytes, largest)});
    return rows;
}

std::vector<KindTotal> rowsOf(const std::array<std::uint64_t, nodeChangeCount>& totals) {
    std::vector<KindTotal> rows;
    for (const auto& row : changeTable) {
        const auto number = static_cast<std::size_t>(row.change);
        if (totals.at(number) > 0)
            rows.push_back({.kind = 0,
                            .title = changeTitle(row.change),
                            .size = ByteFigure(totals.at(number)).text(),
                            .change = static_cast<int>(number)});
    }
    return rows;
}

} // namespace

void KindTotalsModel::setTotals(const KindTotals& totals) {
    setRows(rowsOf(totals));
}

void ExtensionTotalsModel::setTotals(const std::vector<ExtensionTotal>& totals) {
    std::vector<ExtensionRow> rows;
    rows.reserve(totals.size());
    for (const auto& total : totals)
        rows.push_back({.extension = textOf(total.extension),
                        .kind = static_cast<int>(classifyContent("x." + total.extension)),
                        .size = ByteFigure(total.bytes).text(),
                        .count = countOf(total.count, tr("file"), tr("files")),
                        .fraction = fractionOf(total.bytes, totals.front().bytes)});
    setRows(std::move(rows));
}

void MapLegendModel::setTotals(const KindTotals& totals, const ChangeTotals& changes) {
    totals_ = totals;
    changes_ = changes;
    show();
}

void MapLegendModel::setChosen(unsigned numbers) {
    chosen_ = numbers;
    show();
}

void MapLegendModel::show() {
    auto rows = changes_ ? rowsOf(*changes_) : rowsOf(totals_);
    for (auto& row : rows)
        row.active = (chosen_ >> static_cast<unsigned>(std::max(row.kind, row.change)) & 1U) != 0;
    setRows(std::move(rows));
}

} // namespace orbel

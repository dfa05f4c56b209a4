#pragma once

#include "Compare/NodeChanges.h"
#include "Models/GadgetListModel.h"
#include "Scan/KindTotals.h"

#include <array>
#include <optional>
#include <QString>

namespace orbel {

/// What files of one kind take up. A plain value.
struct KindTotal {
    Q_GADGET
    Q_PROPERTY(int kind MEMBER kind)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString size MEMBER size)
    Q_PROPERTY(double fraction MEMBER fraction)
    Q_PROPERTY(bool active MEMBER active)
    Q_PROPERTY(int change MEMBER change)

public:
    int kind = 0; ///< a ContentKind
    QString title;
    QString size;
    double fraction = 0; ///< of the largest one
    bool active = false; ///< chosen as a filter
    int change = -1;     ///< of the row of a change: which NodeChange; it has no kind

    bool operator==(const KindTotal&) const = default;
};

/// What the items of one extension take up. A plain value.
struct ExtensionRow {
    Q_GADGET
    Q_PROPERTY(QString extension MEMBER extension)
    Q_PROPERTY(QString title READ title)
    Q_PROPERTY(int kind MEMBER kind)
    Q_PROPERTY(QString size MEMBER size)
    Q_PROPERTY(QString count MEMBER count)
    Q_PROPERTY(double fraction MEMBER fraction)

public:
    QString extension; ///< in lower case
    int kind = 0;      ///< the ContentKind of its files
    QString size;
    QString count;       ///< "1,204 files"
    double fraction = 0; ///< of the largest one

    QString title() const { return QLatin1Char('.') + extension; }
    bool operator==(const ExtensionRow&) const = default;
};

/// What was measured by kind, the largest first; kinds with nothing are left out.
class KindTotalsModel : public GadgetListModel<KindTotal> {
public:
    void setTotals(const KindTotals& totals);
};

/// The heaviest extensions that were measured, the largest first.
class ExtensionTotalsModel : public GadgetListModel<ExtensionRow> {
public:
    void setTotals(const std::vector<ExtensionTotal>& totals);
};

/// The kinds that the map shows, or the changes where it is coloured by these, with what each takes up below
/// the map's folder, and which of them are chosen as a filter. Kinds are in the order of their size, changes
/// always in the same; what has nothing is left out.
class MapLegendModel : public GadgetListModel<KindTotal> {
public:
    using ChangeTotals = std::optional<std::array<std::uint64_t, nodeChangeCount>>;

    /// `changes`: absent where the kinds are shown.
    void setTotals(const KindTotals& totals, const ChangeTotals& changes);
    const KindTotals& totals() const { return totals_; }

    /// The chosen kinds or changes, one bit for each; 0 when all are shown.
    void setChosen(unsigned numbers);

private:
    void show();

    KindTotals totals_{};
    ChangeTotals changes_;
    unsigned chosen_ = 0;
};

} // namespace orbel

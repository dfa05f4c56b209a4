#pragma once

#include "Models/GadgetListModel.h"
#include "Scan/KindTotals.h"

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

public:
    int kind = 0; ///< FileKind's raw value
    QString title;
    QString size;
    double fraction = 0; ///< of the largest one
    bool active = false; ///< chosen as a filter

    bool operator==(const KindTotal&) const = default;
};

/// What was measured by kind, the largest first; kinds with nothing are left out.
class KindTotalsModel : public GadgetListModel<KindTotal> {
public:
    void setTotals(const KindTotals& totals);
};

/// The kinds that the map shows, with what each takes up below the map's folder, and which of them are chosen
/// as a filter. In the order of the kinds, so that an entry keeps its place from folder to folder; kinds with
/// nothing are left out.
class MapLegendModel : public GadgetListModel<KindTotal> {
public:
    void setTotals(const KindTotals& totals);
    const KindTotals& totals() const { return totals_; }

    /// The chosen kinds, one bit for each raw value; 0 when all are shown.
    unsigned chosen() const { return chosen_; }
    void setChosen(unsigned kinds);

private:
    void show();

    KindTotals totals_{};
    unsigned chosen_ = 0;
};

} // namespace orbel

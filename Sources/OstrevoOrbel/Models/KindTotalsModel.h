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
    int kind = 0; ///< a ContentKind
    QString title;
    QString size;
    double fraction = 0; ///< of the largest one
    bool active = false; ///< chosen as a filter

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

/// The kinds that the map shows, with what each takes up below the map's folder, and which of them are chosen
/// as a filter. The largest first; kinds with nothing are left out.
class MapLegendModel : public GadgetListModel<KindTotal> {
public:
    void setTotals(const KindTotals& totals);
    const KindTotals& totals() const { return totals_; }

    /// The chosen kinds, one bit for each; 0 when all are shown.
    void setChosen(unsigned kinds);

private:
    void show();

    KindTotals totals_{};
    unsigned chosen_ = 0;
};

} // namespace orbel

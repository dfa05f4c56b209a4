#pragma once

#include "Models/ByteFigure.h"
#include "Models/GadgetListModel.h"
#include "Scan/ScanProgress.h"

#include <optional>
#include <QString>
#include <vector>

namespace orbel {

/// An entry directly under the root. A plain value.
struct TopLevelRow {
    Q_GADGET
    Q_PROPERTY(QString path MEMBER path)
    Q_PROPERTY(bool isFolder READ isFolder)
    Q_PROPERTY(QString size READ size)
    Q_PROPERTY(double fraction MEMBER fraction)

public:
    ScanProgress::TopLevel entry;
    QString path;        ///< for people
    double fraction = 0; ///< of the largest one

    bool isFolder() const { return entry.isFolder; }
    QString size() const { return ByteFigure(entry.bytes).text(); }
    bool operator==(const TopLevelRow&) const = default;
};

/// The largest entries directly under the root while a scan runs. Figures change with every report; rows
/// change places at most once a second, so that they can be read.
class TopLevelModel : public GadgetListModel<TopLevelRow> {
public:
    static constexpr std::size_t mostRows = 40;
    static constexpr double secondsBetweenSorts = 1;

    /// Empties the list; `rootPath` is how the root is shown in front of the names that follow.
    void begin(const QString& rootPath);
    /// Takes the entries of one report, largest first, `elapsed` seconds after the scan began.
    void update(const std::vector<ScanProgress::TopLevel>& entries, double elapsed);

private:
    void replaceRows(const std::vector<ScanProgress::TopLevel>& entries);
    void updateFigures(const std::vector<ScanProgress::TopLevel>& entries);

    std::string rootPath_;
    std::optional<double> sortedAt_;
};

} // namespace orbel

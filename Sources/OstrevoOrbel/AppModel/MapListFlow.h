#pragma once

#include "AppModel/AppEnvironment.h"
#include "AppModel/LatestJob.h"
#include "Models/MapListModel.h"

#include <memory>
#include <optional>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <set>
#include <string>
#include <utility>

namespace orbel {

/// The list beside the map: a tree that opens in place. Which folders are open is kept by path, so that
/// they are open again in the next tree, and when the map comes back to where they lie. Long lists are
/// sorted off the main thread; until then those of another folder or tree are in the order of the tree.
/// Lives on the main thread.
class MapListFlow final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the MapModel.")
    Q_PROPERTY(orbel::MapListModel* rows READ rows CONSTANT)
    Q_PROPERTY(orbel::MapListFlow::Column column READ column NOTIFY orderChanged)
    Q_PROPERTY(bool descending READ isDescending NOTIFY orderChanged)
    /// Whether rows are about to come in another order.
    Q_PROPERTY(bool running READ isRunning NOTIFY orderChanged)
    /// How wide the user wants the list, in pixels at the font scale 1; 0 for as wide as usual. Kept.
    Q_PROPERTY(int width READ width WRITE setWidth NOTIFY widthChanged)

public:
    enum Column { Name, Size, Share, Items, Changed };
    Q_ENUM(Column)

    /// `environment` outlives this. Keeps the width in its settings, under "map/listWidth".
    explicit MapListFlow(const AppEnvironment& environment);

    // Intents.

    /// By this column; when it is already so, the other way round.
    Q_INVOKABLE void sortBy(orbel::MapListFlow::Column column);
    /// Opens or closes the folder of a row; nothing happens where it cannot be.
    Q_INVOKABLE void setOpen(int row, bool isOpen);

    /// Shows a folder of a tree, with what was open in it.
    void show(std::shared_ptr<const FileTree> tree, NodeIndex folder, const PathCanonicalizer& canonicalizer);

    MapListModel* rows() { return &rows_; }
    const MapListModel& rows() const { return rows_; }
    Column column() const { return static_cast<Column>(std::to_underlying(order_.column)); }
    bool isDescending() const { return order_.isDescending; }
    bool isRunning() const { return sorting_.isRunning(); }
    int width() const { return width_; }
    void setWidth(int width);

Q_SIGNALS:
    void orderChanged();
    void widthChanged();
    /// The rows are others, or in another order. `keepsPlace`: they are of the folder that was shown before,
    /// in the order that they had.
    void arranged(bool keepsPlace);
    /// What lies in this folder is about to leave the list.
    void closing(quint32 folder);
    /// Rows have come below this one, or gone.
    void turned(int row);

private:
    void followTree(const PathCanonicalizer& canonicalizer);
    void setRows(std::vector<MapRow> rows, bool keepsPlace);
    void arrange(bool keepsPlace);
    /// Whether the rows of a folder take long to sort.
    bool takesLong(NodeIndex folder) const;

    const AppEnvironment& environment_;
    MapListModel rows_;
    std::shared_ptr<const FileTree> tree_;
    NodeIndex folder_ = 0;
    std::string folderPath_;
    MapListOrder order_;
    std::set<std::string> openPaths_;
    NodeSet open_; ///< the same in this tree
    int width_ = 0;
    LatestJob sorting_{"orbel.map-list"};
};

} // namespace orbel

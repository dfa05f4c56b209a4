#pragma once

#include "Models/ByteFigure.h"
#include "Models/GadgetListModel.h"

#include <QString>

namespace orbel {

/// A folder of the scanned tree with its size. A plain value.
struct SizedFolder {
    Q_GADGET
    Q_PROPERTY(quint32 node MEMBER node)
    Q_PROPERTY(QString path MEMBER path)
    Q_PROPERTY(int kind MEMBER kind)
    Q_PROPERTY(QString size READ size)
    Q_PROPERTY(double fraction MEMBER fraction)

public:
    quint32 node = 0; ///< in the tree of this version
    QString path;     ///< for people: "~" in place of the home
    int kind = 0;     ///< a ContentKind: the kind that most of it is
    quint64 bytes = 0;
    double fraction = 0; ///< of the largest one

    QString size() const { return ByteFigure(bytes).text(); }
    bool operator==(const SizedFolder&) const = default;
};

/// Folders with their sizes.
class SizedFoldersModel : public GadgetListModel<SizedFolder> {
public:
    /// The largest first; their fractions are reckoned here.
    void setFolders(std::vector<SizedFolder> folders) {
        for (auto& folder : folders)
            folder.fraction = fractionOf(folder.bytes, folders.front().bytes);
        setRows(std::move(folders));
    }
};

} // namespace orbel

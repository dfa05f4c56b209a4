#pragma once

#include "Models/ByteFigure.h"
#include "Models/GadgetListModel.h"
#include "Safety/PathCanonicalizer.h"
#include "Scan/FileTree.h"
#include "Util/Iso8601.h"

#include <chrono>
#include <optional>
#include <QObject>
#include <QString>
#include <string>
#include <vector>

namespace orbel {

/// A folder that grew. A plain value.
struct GrowthFolder {
    Q_GADGET
    Q_PROPERTY(quint32 node MEMBER node)
    Q_PROPERTY(QString path MEMBER path)
    Q_PROPERTY(int kind MEMBER kind)
    Q_PROPERTY(QString size READ size)

public:
    quint32 node = 0;  ///< in the tree of this version
    std::string place; ///< its absolute path, in visible form
    QString path;      ///< the same for people: "~" in place of the home
    int kind = 0;      ///< a ContentKind: the kind that most of it is
    quint64 bytes = 0; ///< by how much it grew

    QString size() const { return ByteFigure(bytes).text(); }
    bool operator==(const GrowthFolder&) const = default;
};

/// The folders that grew most since an earlier scan of the same root, and since when; or why there is nothing
/// to compare.
class GrowthModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")

    Q_PROPERTY(orbel::RoleList* folders READ folders CONSTANT)
    /// "14 November"; empty when there is no comparison.
    Q_PROPERTY(QString since READ since NOTIFY changed)
    /// What stands in place of the rows when there are none.
    Q_PROPERTY(QString statement READ statement NOTIFY changed)
    Q_PROPERTY(QString sentence READ sentence NOTIFY changed)

public:
    struct Content {
        std::optional<Date> since; ///< absent: no comparison; the begin of 1970: not known
        std::vector<GrowthFolder> folders;
        QString failure; ///< why the scan could not be kept for the next one; empty when it was
    };

    /// `now` decides how the date is written.
    void set(Content content, std::chrono::system_clock::time_point now);
    void clear() { set({}, {}); }
    /// Keeps to the folders in a tree that was made of `base`, whose nodes may have other numbers. What is
    /// gone has no row, nor has what has been left out since, and what holds it.
    void follow(const FileTree& base, const FileTree& tree, const PathCanonicalizer& canonicalizer);

    const QString& failure() const { return failure_; }
    GadgetListModel<GrowthFolder>* folders() { return &folders_; }
    QString since() const { return since_; }
    QString statement() const;
    QString sentence() const;

Q_SIGNALS:
    void changed();

private:
    GadgetListModel<GrowthFolder> folders_;
    QString since_;
    QString failure_;
};

} // namespace orbel

#pragma once

#include "Map/TreemapTile.h"
#include "Scan/FileTree.h"

#include <chrono>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <string>

namespace orbel {

/// "1.5 %" of a whole; whole numbers from 10 on.
QString shareText(std::uint64_t bytes, std::uint64_t whole);

/// "2 October 2025 at 17:40", in the local time of this computer. A dash where nothing was asked about it,
/// because it was not to be entered.
QString changedText(const FileTree& tree, NodeIndex node);

/// The note that an item of the node would have; empty when it has none.
QString noteText(const FileTree& tree, NodeIndex node);

/// "a.mkv"; "films/" for a folder.
QString nameText(const FileTree& tree, NodeIndex node);

/// "Folder", else the kind's name.
QString kindText(const FileTree& tree, NodeIndex node);

/// "1 folder left out": of this tree; empty when none was.
QString leftOutText(const FileTree& tree);

/// What stands in place of a size where a folder was left out.
QString excludedText();

/// "5.2 GB"; a dash for what was left out.
QString sizeText(const FileTree& tree, NodeIndex node);

/// "214 smaller items": three words.
QString smallerItemsText(std::uint64_t count);

/// What the map's panes, its menu and the status line say of one file or folder. A plain value.
class MapItemFacts {
    Q_GADGET
    QML_VALUE_TYPE(mapItemFacts)
    /// Whether this says anything; everything else is empty when not.
    Q_PROPERTY(bool valid MEMBER valid)
    Q_PROPERTY(quint32 node MEMBER node)
    /// See ItemKey.h.
    Q_PROPERTY(QString key MEMBER key)
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(int kind MEMBER kind)
    Q_PROPERTY(QString kindName MEMBER kindName)
    Q_PROPERTY(QString size MEMBER size)
    /// For people: with "~" in place of the home.
    Q_PROPERTY(QString path MEMBER path)
    Q_PROPERTY(QString folder MEMBER folder)
    Q_PROPERTY(QString changed MEMBER changed)
    /// "1.5 % of mira"
    Q_PROPERTY(QString share MEMBER share)
    /// Zooming in on it leads somewhere else.
    Q_PROPERTY(bool zoomable MEMBER zoomable)
    /// A folder, a package too.
    Q_PROPERTY(bool isFolder MEMBER isFolder)
    /// "Grew by 5.2 GB", where the map is coloured by change; else empty.
    Q_PROPERTY(QString change MEMBER change)
    /// Left out of measuring: `size` and `share` say so.
    Q_PROPERTY(bool excluded MEMBER excluded)

public:
    bool valid = false;
    quint32 node = 0;
    QString key;
    QString name;
    int kind = 0;
    QString kindName;
    QString size;
    QString path;
    QString folder;
    QString changed;
    QString share;
    QString change;
    bool zoomable = false;
    bool isFolder = false;
    bool excluded = false;

    bool operator==(const MapItemFacts&) const = default;
};

} // namespace orbel

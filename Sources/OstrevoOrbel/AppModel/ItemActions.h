#pragma once

#include "AppModel/LatestJob.h"
#include "AppModel/Notice.h"
#include "Ports/Desktop.h"
#include "Safety/SafetyPolicy.h"
#include "Scan/FileTree.h"

#include <functional>
#include <memory>
#include <optional>
#include <QObject>
#include <QtQml/qqmlregistration.h>
#include <string>

namespace orbel {

/// What can be done with an item without changing it, wherever it is listed. Items are told by their keys
/// (see ItemKey.h); an empty or invalid key does nothing. Used on the main thread.
class ItemActions final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the AppModel.")

    /// The desktop has a terminal.
    Q_PROPERTY(bool hasTerminal READ hasTerminal CONSTANT)

public:
    using ShownTree = std::function<const FileTree&()>;

    /// The references outlive this. `tree` gives the tree that the map shows, empty when
    /// there is none.
    ItemActions(Desktop& desktop, std::shared_ptr<const SafetyPolicy> policy, Notice& notice, ShownTree tree);

    /// Of a node of that tree; empty when there is no such node.
    Q_INVOKABLE QString keyOf(quint32 node) const;
    Q_INVOKABLE void open(const QString& key) const;
    Q_INVOKABLE void showInFileManager(const QString& key) const;
    /// In the item's folder; a folder is its own.
    Q_INVOKABLE void openTerminal(const QString& key) const;
    Q_INVOKABLE void copyPath(const QString& key) const;
    /// Name, path, kind, size in bytes and as it is read, with a tab between each: a line of a table. What is
    /// not measured has `name` and `size`, as its row shows them, and neither kind nor bytes.
    Q_INVOKABLE void copyRow(const QString& key, const QString& name, const QString& size) const;
    /// Whether the tree has the item; without it the next two say so, and nothing else.
    Q_INVOKABLE bool isMeasured(const QString& key) const;
    Q_INVOKABLE void showOnMap(const QString& key);
    /// Says why an item cannot be ticked.
    Q_INVOKABLE void explainRefusal(const QString& name, const QString& refusal) const;
    /// The command of the program that manages an item refused for this reason; empty when there is none.
    Q_INVOKABLE QString commandOf(const QString& key, const QString& refusal) const;
    Q_INVOKABLE void copyCommand(const QString& key, const QString& refusal) const;
    /// The name of that program, "Steam", when it can be opened; else empty.
    Q_INVOKABLE QString managerOf(const QString& key, const QString& refusal) const;
    Q_INVOKABLE void openManager(const QString& key);
    /// Measures the item, or the folder that it is in, again.
    Q_INVOKABLE void measureAgain(const QString& key);

    /// Whether it is a folder that was measured and can be left out of measuring.
    Q_INVOKABLE bool isExcludable(const QString& key) const;
    /// Whether it was left out.
    Q_INVOKABLE bool isExcluded(const QString& key) const;
    Q_INVOKABLE void exclude(const QString& key);
    Q_INVOKABLE void include(const QString& key);

    bool hasTerminal() const { return desktop_.hasTerminal(); }

Q_SIGNALS:
    void mapWanted(quint32 node);
    void measureWanted(quint32 node);
    void exclusionWanted(quint32 node);
    void inclusionWanted(quint32 node);

private:
    std::optional<NodeIndex> nodeOf(const QString& key) const;
    std::optional<NodeIndex> nodeOrNotice(const QString& key) const;

    Desktop& desktop_;
    std::shared_ptr<const SafetyPolicy> policy_;
    Notice& notice_;
    ShownTree tree_;
    LatestJob managing_{"orbel.manager"};
};

} // namespace orbel

#pragma once

#include "WindowScene.h"

#include <QAccessible>
#include <vector>

namespace orbel::test {

/// What a screen reader finds in a window, as it goes down from the window: every node, those above first.
class SpokenTree {
public:
    struct Node {
        QAccessibleInterface* interface = nullptr;
        int depth = 0;
        int above = -1; ///< the node that it is a child of
        QString name;
        QString description;
        QString value;
        QAccessible::State state;

        QAccessible::Role role() const { return interface->role(); }
        bool isShowing() const { return !state.invisible && !state.offscreen; }
        QQuickItem* item() const { return qobject_cast<QQuickItem*>(interface->object()); }
        QStringList actions() const;
    };

    explicit SpokenTree(QQuickWindow& window);

    const std::vector<Node>& nodes() const { return nodes_; }
    std::vector<Node> childrenOf(int node) const;
    /// The first one that shows and says `name`; null where none does.
    const Node* named(const QString& name) const;
    /// A line for each node.
    QString text() const;

private:
    void add(QAccessibleInterface* interface, int depth, int above);

    std::vector<Node> nodes_;
};

QString roleName(QAccessible::Role role);

} // namespace orbel::test

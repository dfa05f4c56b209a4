#include "SpokenTree.h"

#include <QMetaEnum>

namespace orbel::test {

QString roleName(QAccessible::Role role) {
    return QLatin1String(QMetaEnum::fromType<QAccessible::Role>().valueToKey(role));
}

QStringList SpokenTree::Node::actions() const {
    auto* const actions = interface->actionInterface();
    return actions == nullptr ? QStringList() : actions->actionNames();
}

SpokenTree::SpokenTree(QQuickWindow& window) {
    add(QAccessible::queryAccessibleInterface(&window), 0, -1);
}

void SpokenTree::add(QAccessibleInterface* interface, int depth, int above) {
    if (interface == nullptr)
        return;
    auto* const value = interface->valueInterface();
    const auto place = static_cast<int>(nodes_.size());
    nodes_.push_back(
        {.interface = interface,
         .depth = depth,
         .above = above,
         .name = interface->text(QAccessible::Name),
         .description = interface->text(QAccessible::Description),
         .value = value != nullptr ? value->currentValue().toString() : interface->text(QAccessible::Value),
         .state = interface->state()});
    for (int i = 0; i < interface->childCount(); ++i)
        add(interface->child(i), depth + 1, place);
}

std::vector<SpokenTree::Node> SpokenTree::childrenOf(int node) const {
    std::vector<Node> found;
    std::ranges::copy_if(nodes_, std::back_inserter(found),
                         [&](const auto& each) { return each.above == node; });
    return found;
}

const SpokenTree::Node* SpokenTree::named(const QString& name) const {
    const auto found =
        std::ranges::find_if(nodes_, [&](const auto& node) { return node.isShowing() && node.name == name; });
    return found == nodes_.end() ? nullptr : &*found;
}

QString SpokenTree::text() const {
    QString text;
    for (const auto& node : nodes_) {
        QStringList states;
        const std::pair<const char*, bool> all[] = {
            {"hidden", node.state.invisible},      {"offscreen", node.state.offscreen},
            {"focusable", node.state.focusable},   {"focused", node.state.focused},
            {"checkable", node.state.checkable},   {"checked", node.state.checked},
            {"mixed", node.state.checkStateMixed}, {"disabled", node.state.disabled},
            {"selectable", node.state.selectable}, {"selected", node.state.selected},
            {"active", node.state.active},         {"pressed", node.state.pressed},
            {"readOnly", node.state.readOnly},     {"editable", node.state.editable},
            {"expandable", node.state.expandable}, {"expanded", node.state.expanded},
            {"collapsed", node.state.collapsed},   {"modal", node.state.modal}};
        for (const auto& [name, isSet] : all)
            if (isSet)
                states << QLatin1String(name);
        text += QString(2 * node.depth, QLatin1Char(' ')) + roleName(node.role()) + QStringLiteral(" \"")
                + node.name + QLatin1Char('"');
        if (!node.description.isEmpty())
            text += QStringLiteral(" (") + node.description + QLatin1Char(')');
        if (!node.value.isEmpty())
            text += QStringLiteral(" =") + node.value;
        text += QStringLiteral(" [") + states.join(QLatin1Char(' ')) + QStringLiteral("]");
        if (const auto actions = node.actions(); !actions.isEmpty())
            text += QStringLiteral(" {") + actions.join(QLatin1Char(' ')) + QLatin1Char('}');
        if (node.item() != nullptr && !node.item()->objectName().isEmpty())
            text += QStringLiteral(" #") + node.item()->objectName();
        else if (node.interface->object() != nullptr)
            text += QStringLiteral(" ~") + QLatin1String(node.interface->object()->metaObject()->className());
        text += QLatin1Char('\n');
    }
    return text;
}

} // namespace orbel::test

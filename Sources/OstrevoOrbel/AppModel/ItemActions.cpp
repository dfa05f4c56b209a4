#include "AppModel/ItemActions.h"

#include "Models/ByteFigure.h"
#include "Models/ItemKey.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <QStringList>
#include <utility>

namespace orbel {

ItemActions::ItemActions(Desktop& desktop, const PathCanonicalizer& canonicalizer, Notice& notice,
                         ShownTree tree)
    : desktop_(desktop), canonicalizer_(canonicalizer), notice_(notice), tree_(std::move(tree)) {}

QString ItemActions::keyOf(quint32 node) const {
    const auto& tree = tree_();
    return node < tree.count() ? orbel::keyOf(tree.path(node, canonicalizer_)) : QString();
}

void ItemActions::open(const QString& key) const {
    if (const auto path = pathOfKey(key); !path.empty())
        desktop_.open(path);
}

void ItemActions::showInFileManager(const QString& key) const {
    if (const auto path = pathOfKey(key); !path.empty())
        desktop_.showInFileManager(path);
}

void ItemActions::openTerminal(const QString& key) const {
    const auto path = pathOfKey(key);
    if (path.empty())
        return;
    // A link to a folder lies in another one.
    const auto node = nodeOf(key);
    desktop_.openTerminal(node && !tree_().isFolder(*node) ? std::string(parentPath(path)) : path);
}

void ItemActions::copyPath(const QString& key) const {
    if (const auto path = pathOfKey(key); !path.empty())
        desktop_.copyText(QString::fromStdString(lossyUtf8(path)));
}

void ItemActions::copyRow(const QString& key, const QString& name, const QString& size) const {
    const auto path = pathOfKey(key);
    if (path.empty())
        return;
    QStringList cells{withoutIsolates(name), QString::fromStdString(lossyUtf8(path)), QString(), QString(),
                      withoutIsolates(size)};
    if (const auto node = nodeOf(key)) {
        const auto& tree = tree_();
        const auto bytes = tree.allocated(*node);
        cells = {QString::fromStdString(lossyUtf8(lastPathComponent(path))), cells[1], kindText(tree, *node),
                 QString::number(bytes), ByteFigure(bytes).text()};
        if (tree.isExcluded(*node)) {
            cells[3].clear();
            cells[4] = excludedText();
        }
    }
    for (auto& cell : cells) {
        // What would be another cell or another line.
        for (const auto& [sign, words] : {std::pair("\t", "\\t"), {"\n", "\\n"}, {"\r", "\\r"}})
            cell.replace(QLatin1String(sign), QLatin1String(words));
    }
    desktop_.copyText(cells.join(QLatin1Char('\t')));
}

std::optional<NodeIndex> ItemActions::nodeOf(const QString& key) const {
    const auto path = pathOfKey(key);
    return path.empty() ? std::nullopt : tree_().index(path, canonicalizer_);
}

std::optional<NodeIndex> ItemActions::nodeOrNotice(const QString& key) const {
    const auto node = nodeOf(key);
    if (!node && !key.isEmpty())
        notice_.show(tr("%1 is not in what was measured.").arg(textOf(pathOfKey(key))));
    return node;
}

bool ItemActions::isMeasured(const QString& key) const {
    return nodeOf(key).has_value();
}

void ItemActions::showOnMap(const QString& key) {
    if (const auto node = nodeOrNotice(key))
        Q_EMIT mapWanted(*node);
}

void ItemActions::explainRefusal(const QString& name, const QString& refusal) const {
    notice_.show(tr("“%1” cannot be ticked: %2").arg(name, refusal));
}

void ItemActions::measureAgain(const QString& key) {
    if (const auto node = nodeOrNotice(key))
        Q_EMIT measureWanted(*node);
}

bool ItemActions::isExcludable(const QString& key) const {
    const auto node = nodeOf(key);
    return node && *node != 0 && tree_().isFolder(*node) && !tree_().isExcluded(*node);
}

bool ItemActions::isExcluded(const QString& key) const {
    const auto node = nodeOf(key);
    return node && tree_().isExcluded(*node);
}

void ItemActions::exclude(const QString& key) {
    if (const auto node = nodeOrNotice(key))
        Q_EMIT exclusionWanted(*node);
}

void ItemActions::include(const QString& key) {
    if (const auto node = nodeOrNotice(key))
        Q_EMIT inclusionWanted(*node);
}

} // namespace orbel

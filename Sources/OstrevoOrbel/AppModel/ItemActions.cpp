#include "AppModel/ItemActions.h"

#include "Delete/ManageHint.h"
#include "Models/ByteFigure.h"
#include "Models/ItemKey.h"
#include "Models/MapWords.h"
#include "Models/Wording.h"
#include "Util/PathText.h"
#include "Util/Utf8.h"

#include <QStringList>
#include <utility>

namespace orbel {

namespace {

/// What the reason of a refusal, as it is shown, says of the program that manages the item.
std::optional<ManageHint> shownHint(const QString& key, const QString& refusal) {
    if (refusal.isEmpty())
        return std::nullopt;
    auto hint = ManageHint::of(pathOfKey(key));
    return hint && hint->isShownAs(withoutIsolates(refusal).toStdString()) ? std::move(hint) : std::nullopt;
}

} // namespace

ItemActions::ItemActions(Desktop& desktop, std::shared_ptr<const SafetyPolicy> policy, Notice& notice,
                         ShownTree tree)
    : desktop_(desktop), policy_(std::move(policy)), notice_(notice), tree_(std::move(tree)) {}

QString ItemActions::keyOf(quint32 node) const {
    const auto& tree = tree_();
    return node < tree.count() ? orbel::keyOf(tree.path(node, policy_->canonicalizer())) : QString();
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
    return path.empty() ? std::nullopt : tree_().index(path, policy_->canonicalizer());
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

QString ItemActions::commandOf(const QString& key, const QString& refusal) const {
    const auto hint = shownHint(key, refusal);
    return QString::fromStdString(hint ? hint->command : "");
}

void ItemActions::copyCommand(const QString& key, const QString& refusal) const {
    if (const auto command = commandOf(key, refusal); !command.isEmpty())
        desktop_.copyText(command);
}

QString ItemActions::managerOf(const QString& key, const QString& refusal) const {
    const auto hint = shownHint(key, refusal);
    return QString::fromStdString(hint && !hint->address.empty() ? hint->program : "");
}

void ItemActions::openManager(const QString& key) {
    managing_.run(
        [path = pathOfKey(key), policy = policy_] {
            auto seen = policy->seenFolders();
            return ManageHint::of(path, seen);
        },
        [this](const std::optional<ManageHint>& hint) {
            if (hint && !hint->address.empty())
                desktop_.openAddress(QString::fromStdString(hint->address));
        });
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

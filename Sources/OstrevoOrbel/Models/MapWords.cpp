#include "Models/MapWords.h"

#include "Delete/DeletionItem.h"
#include "Map/TreemapModel.h"
#include "Models/ByteFigure.h"
#include "Models/Wording.h"

#include <algorithm>

namespace orbel {

QString shareText(std::uint64_t bytes, std::uint64_t whole) {
    const double percent = whole == 0 ? 0 : 100.0 * static_cast<double>(bytes) / static_cast<double>(whole);
    return decimalText(percent, percent < 9.95 ? 1 : 0) + QStringLiteral(" %");
}

QString changedText(const FileTree& tree, NodeIndex node) {
    return tree.isModifiedKnown(node) ? dayAndClockText(tree.modified(node)) : QStringLiteral("—");
}

QString noteText(const FileTree& tree, NodeIndex node) {
    return textOf(DeletionItem::noteOn(tree, node).value_or(""));
}

QString nameText(const FileTree& tree, NodeIndex node) {
    return textOf(tree.nameBytes(node)) + (tree.isFolder(node) ? QStringLiteral("/") : QString());
}

QString leftOutText(const FileTree& tree) {
    const auto count =
        std::ranges::count_if(tree.excludedNodes, [&](NodeIndex node) { return tree.isAttached(node); });
    return count == 0 ? QString()
                      : QObject::tr("%1 left out")
                            .arg(countOf(static_cast<std::uint64_t>(count), QObject::tr("folder"),
                                         QObject::tr("folders")));
}

QString excludedText() {
    return QObject::tr("Not measured · excluded");
}

QString sizeText(const FileTree& tree, NodeIndex node) {
    return tree.isExcluded(node) ? QStringLiteral("—") : ByteFigure(tree.allocated(node)).text();
}

QString smallerItemsText(std::uint64_t count) {
    return countOf(count, QObject::tr("smaller item"), QObject::tr("smaller items"));
}

QString kindText(const FileTree& tree, NodeIndex node) {
    return TreemapModel::isPlainFolder(tree, node) ? QObject::tr("Folder")
                                                   : textOf(title(contentKind(tree, node)));
}

} // namespace orbel

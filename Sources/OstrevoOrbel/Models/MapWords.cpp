#include "Models/MapWords.h"

#include "Delete/DeletionItem.h"
#include "Map/TreemapModel.h"
#include "Models/Wording.h"

namespace orbel {

QString shareText(std::uint64_t bytes, std::uint64_t whole) {
    const double percent = whole == 0 ? 0 : 100.0 * static_cast<double>(bytes) / static_cast<double>(whole);
    return decimalText(percent, percent < 9.95 ? 1 : 0) + QStringLiteral(" %");
}

QString changedText(const FileTree& tree, NodeIndex node) {
    return dayAndClockText(tree.modified(node));
}

QString noteText(const FileTree& tree, NodeIndex node) {
    return textOf(DeletionItem::noteOn(tree, node).value_or(""));
}

QString nameText(const FileTree& tree, NodeIndex node) {
    return textOf(tree.nameBytes(node)) + (tree.isFolder(node) ? QStringLiteral("/") : QString());
}

QString smallerItemsText(std::uint64_t count) {
    return countOf(count, QObject::tr("smaller item"), QObject::tr("smaller items"));
}

QString kindText(const FileTree& tree, NodeIndex node) {
    return TreemapModel::isPlainFolder(tree, node) ? QObject::tr("Folder")
                                                   : textOf(title(contentKind(tree, node)));
}

} // namespace orbel

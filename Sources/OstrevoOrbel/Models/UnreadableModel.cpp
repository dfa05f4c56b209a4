#include "Models/UnreadableModel.h"

#include "Models/Wording.h"
#include "Util/PathText.h"
#include "Util/ShellWord.h"

#include <utility>

namespace orbel {

void UnreadableModel::setPaths(std::vector<std::string> paths, quint64 total, const std::string& home) {
    beginResetModel();
    paths_ = std::move(paths);
    total_ = total;
    home_ = home;
    endResetModel();
    Q_EMIT changed();
}

QString UnreadableModel::headline() const {
    return countOf(total_, tr("entry"), tr("entries")) + tr(" could not be read");
}

int UnreadableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant UnreadableModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto& path = paths_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case PathRole:
        return textOf(tildePath(path, home_));
    case CommandRole:
        return QStringLiteral("sudo orbel --scan-json ") + QString::fromStdString(shellWord(path));
    default:
        return {};
    }
}

QHash<int, QByteArray> UnreadableModel::roleNames() const {
    return {{PathRole, "path"}, {CommandRole, "command"}};
}

} // namespace orbel

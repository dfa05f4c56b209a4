#include "Models/UnreadableModel.h"

#include "Models/Wording.h"
#include "Util/PathText.h"
#include "Util/ShellWord.h"

#include <utility>

namespace orbel {

void UnreadableModel::setPaths(const std::vector<std::string>& paths, quint64 total,
                               const std::string& home) {
    std::vector<UnreadableEntry> entries;
    entries.reserve(paths.size());
    for (const auto& path : paths)
        entries.push_back(
            {.path = textOf(tildePath(path, home)),
             .command = QStringLiteral("sudo orbel --scan-json ") + QString::fromStdString(shellWord(path))});
    entries_.setRows(std::move(entries));
    total_ = total;
    Q_EMIT changed();
}

QString UnreadableModel::headline() const {
    return countOf(total_, tr("entry"), tr("entries")) + tr(" could not be read");
}

} // namespace orbel

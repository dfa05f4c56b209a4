#include "AppModel/RecentFolders.h"

#include "Models/Wording.h"
#include "Platform/FileStatus.h"
#include "Safety/PathCanonicalizer.h"
#include "Util/PathText.h"

#include <utility>

namespace orbel {

RecentFolders::RecentFolders(const AppEnvironment& environment, ScanFlow& scan)
    : environment_(environment), scan_(scan) {
    connect(&scan, &ScanFlow::scanFinished, this, &RecentFolders::refresh);
    refresh();
}

void RecentFolders::refresh() {
    job_.run(
        [roots = scan_.knownRoots().folders(), home = environment_.home] {
            std::vector<RecentFolder> folders;
            for (const auto& root : roots) {
                const auto status = platform::fileStatus(root);
                if (status && status->type == platform::FileType::directory)
                    folders.push_back(
                        {.path = textOf(tildePath(PathCanonicalizer::shared().visiblePath(root), home)),
                         .root = root});
            }
            return folders;
        },
        [this](std::vector<RecentFolder> folders) { take(std::move(folders)); });
}

void RecentFolders::take(std::vector<RecentFolder> folders) {
    list_.setRows(std::move(folders));
    Q_EMIT changed();
}

void RecentFolders::measure(int row) {
    if (row >= 0 && row < list_.rowCount())
        scan_.startScan(std::string(list_.rows()[static_cast<std::size_t>(row)].root));
}

void RecentFolders::clear() {
    scan_.knownRoots().forgetFolders();
    job_.drop();
    take({});
}

} // namespace orbel

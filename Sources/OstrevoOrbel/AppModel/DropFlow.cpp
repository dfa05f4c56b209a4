#include "AppModel/DropFlow.h"

#include "Models/Wording.h"
#include "Platform/FileStatus.h"
#include "Saved/OpenScan.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

#include <utility>
#include <vector>

namespace orbel {

DropFlow::DropFlow(const AppEnvironment& environment, ScanFlow& scan, KeptScanFlow& kept,
                   const Activity& activity)
    : environment_(environment), scan_(scan), kept_(kept), activity_(activity) {
    connect(&activity, &Activity::changed, this, &DropFlow::changed);
}

void DropFlow::enter(const QList<QUrl>& urls) {
    isOver_ = true;
    isDropped_ = false;
    found_.reset();
    std::vector<std::string> paths;
    for (const auto& url : urls) {
        if (auto path = pathOfFileUrl(url.toEncoded().toStdString()))
            paths.push_back(std::move(*path));
    }
    // A place that does not answer must not keep the window waiting.
    job_.run(
        [paths = std::move(paths)] {
            Found found;
            for (const auto& path : paths) {
                const auto status = platform::fileStatus(path);
                if (status && status->type == platform::FileType::directory) {
                    if (found.folders++ == 0)
                        found.folder = path;
                } else if (!found.scanFile && isScan(path)) {
                    found.scanFile = path;
                }
            }
            return found;
        },
        [this](Found found) { take(std::move(found)); });
    Q_EMIT changed();
}

void DropFlow::take(Found found) {
    found_ = std::move(found);
    if (isDropped_)
        drop();
    Q_EMIT changed();
}

void DropFlow::leave() {
    isOver_ = false;
    isDropped_ = false;
    job_.drop();
    Q_EMIT changed();
}

void DropFlow::drop() {
    isDropped_ = !found_;
    isOver_ = false;
    if (found_ && found_->folder)
        scan_.startScan(*found_->folder);
    else if (found_ && found_->scanFile)
        kept_.open(*found_->scanFile);
    Q_EMIT changed();
}

QString DropFlow::statement() const {
    if (!found_)
        return {};
    if (!activity_.isIdle())
        return tr("Not now");
    const auto shown = [&](const std::string& path) { return textOf(tildePath(path, environment_.home)); };
    if (found_->folder)
        return tr("Measure %1").arg(shown(*found_->folder));
    return found_->scanFile ? tr("Open %1").arg(shown(*found_->scanFile)) : tr("Drop a folder");
}

QString DropFlow::sentence() const {
    if (!found_)
        return {};
    if (!activity_.isIdle())
        return tr("Something is being measured or moved.");
    if (!found_->folder && found_->scanFile)
        return tr("It is a scan that was kept: it can be looked at and searched, and nothing moves.");
    if (!found_->folder)
        return tr("A folder is measured with all that is in it; a file by itself is not.");
    if (found_->folders > 1)
        return tr("The first of %1 folders: one is measured at a time.")
            .arg(countText(static_cast<std::uint64_t>(found_->folders)));
    return tr("Measuring reads names and sizes; it changes nothing.");
}

} // namespace orbel

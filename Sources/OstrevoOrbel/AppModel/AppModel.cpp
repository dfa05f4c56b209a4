#include "AppModel/AppModel.h"

#include "Delete/LiveTrash.h"
#include "Journal/LiveRestore.h"
#include "Models/Wording.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"

namespace orbel {

namespace {

std::shared_ptr<TrashOperations> trashOf(const AppEnvironment& environment) {
    return environment.trash ? environment.trash : std::make_shared<LiveTrash>(environment.trashFolder);
}

Screen firstScreen(const LaunchOptions& options) {
    return options.openScreen.value_or(options.selectApp ? Screen::uninstall : Screen::overview);
}

} // namespace

AppModel::AppModel(AppEnvironment environment, QObject* parent)
    : QObject(parent),
      environment_(std::move(environment)),
      policy_(std::make_shared<const SafetyPolicy>(environment_.home)),
      journalStore_(std::make_shared<JournalStore>(environment_.journalPath)),
      session_(Trasher(*policy_, journalStore_, trashOf(environment_))),
      putBackService_(*policy_, journalStore_, std::make_shared<LiveRestore>()),
      shown_(firstScreen(environment_.options)),
      disk_(environment_, activity_),
      scan_(environment_, disk_, activity_, notice_),
      keeping_(environment_, notice_),
      compare_(environment_, scan_, keeping_, notice_),
      changes_(environment_, compare_),
      kept_(environment_, scan_, disk_, activity_, notice_),
      system_(environment_, scan_),
      recent_(environment_, scan_),
      drop_(environment_, scan_, kept_, activity_),
      treeEdits_(environment_, scan_, disk_),
      putBack_(environment_, putBackService_, activity_),
      moves_(environment_, session_, scan_, putBack_, shown_, activity_, notice_),
      rescan_(environment_, scan_, treeEdits_, moves_, activity_, notice_),
      exclusions_(environment_, scan_, treeEdits_, rescan_, moves_, activity_, notice_),
      // In a home where nothing may be changed, nothing is settled either.
      journal_(environment_, journalStore_, !policy_->homeReason(), putBackService_, putBack_, activity_,
               notice_),
      map_(environment_, policy_, scan_, moves_),
      largeOld_(environment_, policy_, scan_, moves_),
      duplicates_(environment_, policy_, scan_, moves_, shown_, notice_),
      tidy_(environment_, policy_, scan_, moves_, shown_),
      apps_(environment_, policy_, scan_, moves_, shown_, notice_),
      alert_(environment_, disk_, notice_),
      appearance_(environment_),
      actions_(*environment_.desktop, policy_, notice_,
               [this]() -> const FileTree& { return *scan_.tree(); }) {
    environment_.desktop->reportFailure = [this](const QString& words) { notice_.show(words); };
    connect(&shown_, &ShownScreen::changed, this, &AppModel::screenChanged);
    connect(&actions_, &ItemActions::mapWanted, this, &AppModel::showOnMap);
    connect(&map_, &MapModel::tickRefused, &actions_, &ItemActions::explainRefusal);
    connect(&map_, &MapModel::byChangeChanged, &compare_,
            [this] { compare_.need(CompareFlow::Need::map, map_.isByChange()); });
    connect(&compare_, &CompareFlow::comparedChanged, &map_,
            [this] { map_.setCompared(compare_.compared()); });
    connect(&actions_, &ItemActions::measureWanted, &rescan_, &RescanFlow::start);
    connect(&actions_, &ItemActions::exclusionWanted, &exclusions_, &ExclusionFlow::exclude);
    connect(&actions_, &ItemActions::inclusionWanted, &exclusions_, &ExclusionFlow::include);
    connect(&kept_, &KeptScanFlow::lastOpened, &rescan_, [this] {
        if (keeping_.measuresAtStart())
            rescan_.startWhole();
    });
    // What does not follow the tree is asked about again.
    connect(&exclusions_, &ExclusionFlow::changed, &duplicates_, &DuplicatesFlow::checkAll);
    connect(&exclusions_, &ExclusionFlow::changed, &apps_, &AppsFlow::checkAgain);
    // What was moved leaves the tree, and what was put back returns to it, before the disk is
    // looked at again.
    connect(&moves_, &MoveFlow::moved, &treeEdits_, &TreeEdits::remove);
    connect(&putBack_, &PutBackFlow::restored, &treeEdits_, &TreeEdits::restore);
    connect(&moves_, &MoveFlow::finished, &disk_, &DiskState::refreshVolume);
    connect(&moves_, &MoveFlow::finished, &journal_, &JournalFlow::load);
    connect(&putBack_, &PutBackFlow::restored, &disk_, &DiskState::refreshVolume);
    connect(&putBack_, &PutBackFlow::restored, &journal_, &JournalFlow::load);
}

void AppModel::setScreenName(const QString& name) {
    if (const auto screen = screenNamed(name.toStdString()))
        setScreen(*screen);
}

bool AppModel::isShownScreenBusy() const {
    switch (screen()) {
    case Screen::large:
        return largeOld_.isBusy();
    case Screen::duplicates:
        return duplicates_.isBusy();
    case Screen::uninstall:
        return apps_.isBusy();
    case Screen::tidy:
        return tidy_.isBusy();
    case Screen::journal:
        return journal_.isBusy();
    case Screen::overview:
        return system_.isBusy() || compare_.isBusy();
    case Screen::map:
        break;
    }
    return false;
}

QUrl AppModel::homeFolder() const {
    return {textOf(fileUrl(environment_.home))};
}

void AppModel::chooseFolderAndScan() {
    Q_EMIT folderWanted(tr("Choose a folder to map."), homeFolder());
}

void AppModel::showOnMap(quint32 node) {
    if (node >= scan_.tree()->count())
        return;
    setScreen(Screen::map);
    map_.jumpTo(node);
}

void AppModel::showKindOnMap(int kind) {
    setScreen(Screen::map);
    map_.showOnly({.kinds = 1U << static_cast<unsigned>(kind), .extension = {}});
}

void AppModel::showExtensionOnMap(const QString& extension) {
    setScreen(Screen::map);
    map_.showOnly({.kinds = 0, .extension = extension.toStdString()});
}

} // namespace orbel

#include "AppModel/AppModel.h"

#include "AppModel/AppsFlow.h"
#include "AppModel/DuplicatesFlow.h"
#include "AppModel/ItemActions.h"
#include "AppModel/JournalFlow.h"
#include "AppModel/LargeOldFlow.h"
#include "AppModel/MoveFlow.h"
#include "AppModel/PutBackFlow.h"
#include "AppModel/RescanFlow.h"
#include "AppModel/TidyFlow.h"
#include "AppModel/TreeEdits.h"
#include "Delete/LiveTrash.h"
#include "Journal/IntentSettling.h"
#include "Journal/LiveRestore.h"
#include "Models/Wording.h"
#include "Platform/HomeTrash.h"
#include "Safety/FullDiskAccess.h"
#include "Util/AppVersion.h"
#include "Util/FileUrl.h"
#include "Util/PathText.h"
#include "Util/Thread.h"

#include <QFile>
#include <QFileInfo>
#include <QTimer>

namespace orbel {

namespace {

std::shared_ptr<TrashOperations> trashOf(const AppEnvironment& environment) {
    return environment.trash ? environment.trash : std::make_shared<LiveTrash>(environment.trashFolder);
}

/// To give back the memory of a long journal takes longer than the main thread may stand still.
std::shared_ptr<const JournalHistory> sharedHistory(std::vector<JournalEntry> entries) {
    return {new JournalHistory(std::move(entries)), [](const JournalHistory* last) {
                const auto dispose = [last] { delete last; };
                constexpr std::size_t quicklyFreed = 1'000;
                if (last->entries().size() <= quicklyFreed || !Thread::startDetached("orbel.free", dispose))
                    dispose();
            }};
}

} // namespace

AppModel::AppModel(AppEnvironment environment, QObject* parent)
    : QObject(parent),
      environment_(std::move(environment)),
      policy_(environment_.home),
      journal_(std::make_shared<JournalStore>(environment_.journalPath)),
      session_(Trasher(policy_, journal_, trashOf(environment_))),
      putBackService_(policy_, journal_, std::make_shared<LiveRestore>()),
      journalHistory_(std::make_shared<JournalHistory>()),
      scanRoot_(environment_.dataVolumePath),
      tree_(sharedTree(FileTree())),
      appearance_(*environment_.settings),
      lowDisk_(loadLowDiskSettings(*environment_.settings)),
      treeEdits_(std::make_unique<TreeEdits>(*this)),
      putBack_(std::make_unique<PutBackFlow>(*this)),
      rescan_(std::make_unique<RescanFlow>(*this)),
      moves_(std::make_unique<MoveFlow>(*this)),
      journalFlow_(std::make_unique<JournalFlow>(*this)),
      largeOld_(std::make_unique<LargeOldFlow>(*this)),
      duplicates_(std::make_unique<DuplicatesFlow>(*this)),
      tidy_(std::make_unique<TidyFlow>(*this)),
      apps_(std::make_unique<AppsFlow>(*this)),
      actions_(std::make_unique<ItemActions>(*environment_.desktop, policy_.canonicalizer(),
                                             [this]() -> const FileTree& { return *tree_; })) {
    connect(actions_.get(), &ItemActions::mapWanted, this, &AppModel::showOnMap);
    connect(actions_.get(), &ItemActions::measureWanted, rescan_.get(), &RescanFlow::start);
    screen_ = options().openScreen.value_or(options().selectApp ? Screen::uninstall : screen_);
    alertTimer_.setInterval(LowDiskAlert::checkInterval);
    connect(&alertTimer_, &QTimer::timeout, this, &AppModel::checkFreeSpace);
    trashTimer_.setSingleShot(true);
    trashTimer_.setInterval(std::chrono::milliseconds(500));
    connect(&trashTimer_, &QTimer::timeout, this, &AppModel::takeTrashChange);
    connect(&trashWatch_, &QFileSystemWatcher::directoryChanged, &trashTimer_, [this] {
        if (!trashTimer_.isActive())
            trashTimer_.start();
    });
    refreshVolume();
    refreshVolumes();
    refreshFullDiskAccess();
    loadJournal();
    restartAlertLoop();
}

AppModel::~AppModel() {
    if (cancellation_)
        cancellation_->cancel();
}

QString AppModel::screenName() const {
    return textOf(screenNames.at(static_cast<std::size_t>(screen_)));
}

QString AppModel::screenTitle() const {
    return textOf(screenTitles.at(static_cast<std::size_t>(screen_)));
}

void AppModel::setScreenName(const QString& name) {
    if (const auto screen = screenNamed(name.toStdString()))
        setScreen(*screen);
}

void AppModel::setScreen(Screen screen) {
    if (screen == screen_)
        return;
    screen_ = screen;
    Q_EMIT screenChanged();
}

bool AppModel::isShownScreenBusy() const {
    switch (screen_) {
    case Screen::large:
        return largeOld_->isBusy();
    case Screen::duplicates:
        return duplicates_->isBusy();
    case Screen::uninstall:
        return apps_->isBusy();
    case Screen::tidy:
        return tidy_->isBusy();
    case Screen::journal:
        return journalFlow_->isBusy();
    case Screen::overview:
    case Screen::map:
        break;
    }
    return false;
}

bool AppModel::needsFullDiskAccess() const {
    return !options().allowWithoutFullDiskAccess && fullDiskAccess_ == false;
}

void AppModel::refreshFullDiskAccess() {
    // A check that cannot decide must not lock the user out.
    const bool isGranted = environment_.isFullDiskAccessGranted(home()).value_or(true);
    if (fullDiskAccess_ == isGranted)
        return;
    fullDiskAccess_ = isGranted;
    Q_EMIT fullDiskAccessChanged();
    if (!isGranted || !options().scanPath || scanState_ != ScanState::idle)
        return;
    const auto delay = std::chrono::duration<double>(std::max(options().scanDelay, 0.0));
    QTimer::singleShot(std::chrono::duration_cast<std::chrono::milliseconds>(delay), this,
                       [this] { startScan(*options().scanPath); });
}

void AppModel::openPrivacySettings() {
    environment_.desktop->openAddress(textOf(FullDiskAccess::settingsURL));
}

void AppModel::refreshVolume() {
    watchTrash();
    if (auto volume = environment_.readVolume(environment_.dataVolumePath); volume != volume_) {
        volume_ = volume;
        // Set against what was measured, the volume waits for the Trash: both are of one moment there.
        if (!counted_) {
            ledgerVolume_ = volume;
            updateLedgers();
        }
        Q_EMIT volumeChanged();
    }
    inbox_.runAside(
        "orbel.trash-size", [reader = diskReader(), root = scanRoot_] { return reader.read(root); },
        [this, root = scanRoot_](const DiskMoment& moment) {
            // An edit that is under way brings a moment of its own, which fits the tree that it makes.
            if (root == scanRoot_ && !(hasTree() && treeEdits_->isBusy()))
                takeMoment(moment);
            else
                trashTimer_.start();
        });
}

/// Watches the folder of the trashed items or, until there is one, the nearest above it.
void AppModel::watchTrash() {
    const auto items = platform::trashedItemsFolder(environment_.trashFolder);
    QString watched;
    for (const auto& folder :
         {items, environment_.trashFolder, std::string(parentPath(environment_.trashFolder))}) {
        if (const auto name = QFile::decodeName(folder.c_str()); QFileInfo(name).isDir()) {
            watched = name;
            break;
        }
    }
    const auto before = trashWatch_.directories();
    if (before == QStringList{watched})
        return;
    if (!before.isEmpty())
        trashWatch_.removePaths(before);
    if (!watched.isEmpty())
        trashWatch_.addPath(watched);
}

/// Every item that is moved changes the Trash; the end of the move tells of all of them.
void AppModel::takeTrashChange() {
    if (moves_->isDeleting() || moves_->isPuttingBack())
        trashTimer_.start();
    else
        refreshVolume();
}

void AppModel::refreshVolumes() {
    struct Found {
        std::vector<platform::Mount> mounts;
        std::vector<MountedVolume> volumes;
    };
    inbox_.runAside(
        "orbel.volumes",
        [table = environment_.mountTable, read = environment_.readVolume] {
            Found found{.mounts = table(), .volumes = {}};
            found.volumes = mountedVolumes(found.mounts, read);
            return found;
        },
        [this](Found found) {
            mounts_ = std::move(found.mounts);
            volumes_.setVolumes(std::move(found.volumes));
            updateLedgers();
        });
}

QString AppModel::trashSizeText() const {
    return trashBytes_ ? ByteFigure(*trashBytes_).text() : QStringLiteral("—");
}

void AppModel::openTrash() {
    environment_.desktop->openTrash(platform::trashedItemsFolder(environment_.trashFolder));
}

void AppModel::showJournalInFileManager() {
    environment_.desktop->showInFileManager(journal_->path());
}

void AppModel::showAbout() {
    Q_EMIT aboutWanted();
}

void AppModel::chooseFolderAndScan() {
    Q_EMIT folderWanted(tr("Choose a folder to map."), QUrl(textOf(fileUrl(home()))));
}

void AppModel::copyText(const QString& text) {
    environment_.desktop->copyText(text);
}

void AppModel::showOnMap(quint32 node) {
    if (node >= tree_->count())
        return;
    setScreen(Screen::map);
    Q_EMIT mapNodeWanted(node);
}

void AppModel::showKindOnMap(int kind) {
    setScreen(Screen::map);
    Q_EMIT mapKindWanted(kind);
}

void AppModel::noteTiles(int tiles) {
    if (environment_.diagnostics)
        environment_.diagnostics->setTiles(tiles);
}

void AppModel::mark(std::string_view name) {
    if (environment_.diagnostics)
        environment_.diagnostics->mark(name);
}

void AppModel::setNotice(const QString& words) {
    if (words == notice_)
        return;
    notice_ = words;
    Q_EMIT noticeChanged();
}

void AppModel::dismissNotice() {
    setNotice({});
}

/// What an earlier process could not write is written first, which must not happen in a home where nothing
/// may be changed.
void AppModel::loadJournal() {
    struct Loaded {
        std::shared_ptr<const JournalHistory> history;
        std::optional<FileStamp> stamp;
        QString failure;
        QString notice;
    };
    const bool maySettle = !policy_.homeReason();
    inbox_.runAside(
        "orbel.journal",
        [journal = journal_, maySettle, known = journalHistory_, knownStamp = journalStamp_] {
            Loaded loaded;
            if (maySettle) {
                const auto settlement = settleIntents(*journal);
                QStringList words;
                for (const auto& doubt : settlement.doubts)
                    words << textOf(doubt.words);
                for (const auto& failure : settlement.failures)
                    words << textOf(failure);
                loaded.notice = words.join(QLatin1Char('\n'));
            }
            // Lines are only ever added, so a file of the same length holds the same lines.
            loaded.stamp = FileStamp::of(journal->path());
            if (loaded.stamp && loaded.stamp == knownStamp) {
                loaded.history = known;
                return loaded;
            }
            auto entries = journal->read();
            if (!entries) {
                loaded.failure = textOf(entries.error().words);
                loaded.stamp.reset();
            }
            loaded.history = sharedHistory(entries ? *std::move(entries) : std::vector<JournalEntry>());
            return loaded;
        },
        [this, job = ++journalJob_](Loaded loaded) {
            // What is told once is told even when a later reading is under way.
            if (!loaded.notice.isEmpty())
                setNotice(loaded.notice);
            if (job != journalJob_)
                return;
            if (!loaded.failure.isEmpty() && loaded.failure != journalFailure_)
                setNotice(loaded.failure);
            if (loaded.failure.isEmpty() && !journalFailure_.isEmpty() && notice_ == journalFailure_)
                setNotice({});
            journalFailure_ = loaded.failure;
            journalStamp_ = loaded.stamp;
            isJournalRead_ = true;
            journalHistory_ = std::move(loaded.history);
            Q_EMIT journalEntriesChanged();
        });
}

QString AppModel::journalPathText() const {
    return textOf(tildePath(journal_->path(), home()));
}

QString AppModel::version() const {
    return textOf(appVersion());
}

QString AppModel::motto() const {
    return QStringLiteral("Measure first. Change safely. Always reversible.");
}

bool AppModel::opensAtLogin() const {
    return environment_.loginItem->isEnabled();
}

void AppModel::setOpenAtLogin(bool opens) {
    if (opens == opensAtLogin())
        return;
    if (!environment_.loginItem->setEnabled(opens))
        setNotice(tr("The desktop’s list of what it starts at login could not be written."));
    Q_EMIT openAtLoginChanged();
}

} // namespace orbel

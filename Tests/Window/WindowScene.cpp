#include "WindowScene.h"

#include "Models/IconAddress.h"
#include "SampleDisk.h"
#include "Saved/ScanArchive.h"
#include "Services/AppIcons.h"
#include "Util/Check.h"

#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QtTest/QTest>

namespace orbel::test {

namespace {

constexpr int patience = 10'000; ///< milliseconds

class SilentNotifier final : public Notifier {
public:
    void requestPermission(std::function<void(bool)> answer) override { answer(true); }
    void post(const LowDiskAlert::Message& /*message*/) override {}
};

class RememberedLoginItem final : public LoginItem {
public:
    bool isEnabled() const override { return isEnabled_; }
    bool setEnabled(bool enabled) override {
        isEnabled_ = enabled;
        return true;
    }

private:
    bool isEnabled_ = false;
};

bool inheritsText(const QQuickItem& item) {
    return item.inherits("QQuickText");
}

void collect(QQuickItem& item, std::vector<QQuickItem*>& found,
             const std::function<bool(const QQuickItem&)>& wanted) {
    if (!item.isVisible())
        return;
    if (wanted(item))
        found.push_back(&item);
    const auto children = item.childItems();
    for (auto* child : children)
        collect(*child, found, wanted);
}

/// Those in a window and in its dialogs, which are windows of their own since Qt 6.8.
std::vector<QQuickItem*> collectFrom(QQuickWindow& window,
                                     const std::function<bool(const QQuickItem&)>& wanted) {
    std::vector<QQuickItem*> found;
    collect(*window.contentItem(), found, wanted);
    const auto others = QGuiApplication::topLevelWindows();
    for (auto* other : others) {
        auto* const dialog = qobject_cast<QQuickWindow*>(other);
        if (dialog != nullptr && dialog->isVisible() && dialog->transientParent() == &window)
            collect(*dialog->contentItem(), found, wanted);
    }
    return found;
}

} // namespace

/// Holds scans back. Shared with their threads, which may outlive the scene.
struct WindowScene::Gate {
    std::mutex mutex;
    std::condition_variable changed;
    bool isOpen = true;
};

WindowScene::WindowScene() : gate_(std::make_shared<Gate>()) {
    environment.home = SampleDisk::home;
    environment.dataVolumePath = "/";
    environment.trashFolder = folder_.path("Trash");
    environment.journalPath = folder_.path("journal.jsonl");
    environment.scan = [gate = gate_](const std::string& /*root*/, const ScanCancellation& cancellation,
                                      const ScanProgressCallback& progress,
                                      const Exclusions& /*exclusions*/) {
        progress(SampleDisk::progress());
        std::unique_lock lock(gate->mutex);
        while (!gate->isOpen && !cancellation.isCancelled())
            gate->changed.wait_for(lock, std::chrono::milliseconds(5));
        return cancellation.isCancelled() ? SampleDisk::partlyMeasured() : SampleDisk::measured();
    };
    environment.readVolume = [](const std::string& /*path*/) { return SampleDisk::volume(); };
    environment.mountTable = SampleDisk::mounts;
    environment.measureTrash = [](const std::string& /*trash*/) {
        return std::optional<std::uint64_t>(5'800'000'000);
    };
    environment.isFullDiskAccessGranted = [](const std::string& /*home*/) { return std::optional(true); };
    environment.findLargeOld = SampleDisk::largeOld;
    environment.systemPlaces = SampleDisk::systemPlaces;
    environment.now = std::chrono::system_clock::now;
    environment.installedApps = [] { return std::vector<InstalledApp>(); };
    environment.runningPrograms = [] { return std::vector<platform::RunningProgram>(); };
    environment.askToQuit = [](const std::vector<platform::RunningProgram>& /*running*/) { return false; };
    environment.settings = std::make_shared<QSettings>(QString::fromStdString(folder_.path("settings.ini")),
                                                       QSettings::IniFormat);
    environment.desktop = desktop_;
    environment.notifier = std::make_shared<SilentNotifier>();
    environment.loginItem = std::make_shared<RememberedLoginItem>();
}

WindowScene::~WindowScene() {
    releaseScans();
    engine_.reset();
    app_.reset();
}

void WindowScene::keepScan(const ScanResult& scan, int daysAgo) {
    environment.scansFolder = folder_.path("scans");
    ScanOrigin origin;
    origin.measuredAt = currentDate() - std::chrono::days(daysAgo);
    EXPECT_TRUE(ScanArchive(environment.scansFolder).keep(scan.tree, origin, currentDate()));
}

void WindowScene::open(int width, int height) {
    app_ = std::make_unique<AppModel>(environment);
    engine_ = std::make_unique<QQmlApplicationEngine>();
    engine_->addImportPath(QStringLiteral(":/qt/qml"));
    engine_->addImageProvider(iconProvider, new AppIcons); // the engine owns it
    engine_->setInitialProperties({{QStringLiteral("app"), QVariant::fromValue(app_.get())},
                                   {QStringLiteral("width"), width},
                                   {QStringLiteral("height"), height}});
    // A binding that fails is a fault even where the window looks right.
    QObject::connect(engine_.get(), &QQmlEngine::warnings, [](const QList<QQmlError>& warnings) {
        for (const auto& warning : warnings)
            ADD_FAILURE() << warning.toString().toStdString();
    });
    engine_->load(QUrl(QStringLiteral("qrc:/qt/qml/OstrevoOrbel/Views/Main.qml")));
    ORBEL_CHECK(!engine_->rootObjects().isEmpty(), "The window could not be loaded");
    window_ = qobject_cast<QQuickWindow*>(engine_->rootObjects().constFirst());
    window_->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_, patience));
    EXPECT_TRUE(waitUntil([this] { return app_->disk()->trashBytes().has_value(); }));
    settle();
}

void WindowScene::holdScans() {
    const std::lock_guard lock(gate_->mutex);
    gate_->isOpen = false;
}

void WindowScene::releaseScans() {
    const std::lock_guard lock(gate_->mutex);
    gate_->isOpen = true;
    gate_->changed.notify_all();
}

QQuickItem* WindowScene::item(const QString& name) {
    const auto found =
        collectFrom(*window_, [&](const QQuickItem& item) { return item.objectName() == name; });
    if (found.empty())
        ADD_FAILURE() << "Not to be seen: " << name.toStdString();
    return found.empty() ? nullptr : found.front();
}

bool WindowScene::isShown(const QString& name) {
    return !collectFrom(*window_, [&](const QQuickItem& item) { return item.objectName() == name; }).empty();
}

std::vector<QQuickItem*> WindowScene::texts() {
    return collectFrom(*window_, [](const QQuickItem& item) {
        return inheritsText(item) && !item.property("text").toString().trimmed().isEmpty()
               && item.opacity() > 0;
    });
}

bool WindowScene::says(const QString& words) {
    const auto all = texts();
    return std::ranges::any_of(
        all, [&](QQuickItem* text) { return text->property("text").toString().contains(words); });
}

void WindowScene::click(const QString& name) {
    waitUntil([&] { return isShown(name); });
    const auto* const target = item(name);
    if (target == nullptr)
        return;
    const auto centre = target->mapToScene({target->width() / 2, target->height() / 2}).toPoint();
    QTest::mouseClick(window_, Qt::LeftButton, Qt::NoModifier, centre);
    settle();
}

void WindowScene::press(int key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(window_, static_cast<Qt::Key>(key), modifiers);
    settle();
}

testing::AssertionResult WindowScene::hasFocus(const QString& name) {
    const auto focused = [this] {
        const auto* const item = window_->activeFocusItem();
        return item == nullptr ? QString() : item->objectName();
    };
    if (waitUntil([&] { return focused() == name; }))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "the focus is on " << focused().toStdString();
}

void WindowScene::setAppearance(const QString& choice) {
    app_->appearance()->setChoice(choice);
    settle();
}

void WindowScene::setFontScale(double scale) {
    QQmlExpression expression(QQmlEngine::contextForObject(window_), window_,
                              QStringLiteral("Theme.fontScale = %1").arg(scale));
    expression.evaluate();
    EXPECT_FALSE(expression.hasError()) << expression.error().toString().toStdString();
    settle();
}

bool WindowScene::waitUntil(const std::function<bool()>& met) {
    return QTest::qWaitFor(met, patience);
}

void WindowScene::settle() {
    // Polishing can make items that have to be polished, and colours fade in 80 ms.
    QTest::qWait(150);
}

QImage WindowScene::picture() {
    return window_->grabWindow();
}

} // namespace orbel::test

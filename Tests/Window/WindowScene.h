#pragma once

#include "AppModel/AppModel.h"
#include "FakeDesktop.h"
#include "Support/TemporaryFolder.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <QImage>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <string>

namespace orbel::test {

/// The whole window over a model whose world belongs to the test: a sample disk, a home in a temporary
/// folder, no desktop. Mouse and keyboard act as a person's would: on what can be seen.
class WindowScene {
public:
    WindowScene();
    ~WindowScene();

    /// To be changed before `open`.
    AppEnvironment environment;
    /// Keeps a scan of so many days ago, for the ones that follow to be compared with.
    void keepScan(const ScanResult& scan, int daysAgo);
    void open(int width = 1440, int height = 900);

    AppModel& app() { return *app_; }
    QQuickWindow& window() { return *window_; }
    const FakeDesktop& requests() const { return *desktop_; }
    const std::string& folder() const { return folder_.path(); }

    /// Scans run until they are told to go on, or stopped.
    void holdScans();
    void releaseScans();

    /// The visible item of this object name; fails the test when there is none.
    QQuickItem* item(const QString& name);
    bool isShown(const QString& name);
    /// All visible items of the scene that are texts.
    std::vector<QQuickItem*> texts();
    /// Whether a text with these words is to be seen.
    bool says(const QString& words);

    void click(const QString& name);
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Whether what has this object name gets the keyboard's focus, at once or soon.
    testing::AssertionResult hasFocus(const QString& name);

    void setAppearance(const QString& choice);
    /// The desktop's font scale: 2 for 200 %.
    void setFontScale(double scale);

    /// Lets the window live until `met`; false when that takes too long.
    bool waitUntil(const std::function<bool()>& met);
    /// Until nothing more is to be laid out or drawn.
    void settle();
    QImage picture();

private:
    struct Gate;

    TemporaryFolder folder_;
    std::shared_ptr<FakeDesktop> desktop_ = std::make_shared<FakeDesktop>();
    std::shared_ptr<Gate> gate_;
    std::unique_ptr<AppModel> app_;
    std::unique_ptr<QQmlApplicationEngine> engine_;
    QQuickWindow* window_ = nullptr;
};

} // namespace orbel::test

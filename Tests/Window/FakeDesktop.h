#pragma once

#include "Ports/Appearance.h"
#include "Ports/Desktop.h"

#include <QString>
#include <string>

namespace orbel::test {

/// Records the last of each thing that was asked of the desktop.
struct FakeDesktop final : Desktop {
    void open(const std::string& path) override { opened = path; }
    void showInFileManager(const std::string& path) override { shown = path; }
    bool hasTerminal() override { return isTerminalThere; }
    void openTerminal(const std::string& path) override { terminal = path; }
    void openTrash(const std::string& itemsFolder) override { openedTrash = itemsFolder; }
    void openAddress(const QString& address) override { openedAddress = address; }
    void copyText(const QString& text) override { copied = text; }

    std::string opened;
    std::string shown;
    std::string terminal;
    bool isTerminalThere = true;
    std::string openedTrash;
    QString openedAddress;
    QString copied;
};

/// A desktop that wants what the test says.
struct FakeAppearance final : Appearance {
    bool isDark() const override { return wantsDark; }
    bool isMotionReduced() const override { return wantsLessMotion; }
    bool isContrastHigh() const override { return wantsContrast; }

    bool wantsDark = false;
    bool wantsLessMotion = false;
    bool wantsContrast = false;
};

} // namespace orbel::test

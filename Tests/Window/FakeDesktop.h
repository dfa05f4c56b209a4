#pragma once

#include "Ports/Desktop.h"

#include <QString>
#include <string>

namespace orbel::test {

/// Records the last of each thing that was asked of the desktop.
struct FakeDesktop final : Desktop {
    void open(const std::string& path) override { opened = path; }
    void showInFileManager(const std::string& path) override { shown = path; }
    void openTrash(const std::string& itemsFolder) override { openedTrash = itemsFolder; }
    void openAddress(const QString& /*address*/) override {}
    void copyText(const QString& text) override { copied = text; }

    std::string opened;
    std::string shown;
    std::string openedTrash;
    QString copied;
};

} // namespace orbel::test

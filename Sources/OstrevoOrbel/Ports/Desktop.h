#pragma once

#include <functional>
#include <QString>
#include <string>

namespace orbel {

/// What the window asks of the desktop around it. Called on the main thread; nothing here waits for an
/// answer. Paths are as they are on the disk.
class Desktop {
public:
    Desktop() = default;
    virtual ~Desktop() = default;
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    /// Opens a file or folder with the program that the user has for it.
    virtual void open(const std::string& path) = 0;
    /// Shows an item, selected, in the file manager; where none answers, opens the folder that holds it.
    virtual void showInFileManager(const std::string& path) = 0;
    /// Whether there is a terminal to be opened.
    virtual bool hasTerminal() = 0;
    /// Opens a terminal in a folder; for a file, in the folder that holds it.
    virtual void openTerminal(const std::string& path) = 0;
    /// Shows the Trash; where the desktop has no such place, the folder of its items.
    virtual void openTrash(const std::string& itemsFolder) = 0;
    /// Opens an address, such as a page of the system's settings.
    virtual void openAddress(const QString& address) = 0;
    virtual void copyText(const QString& text) = 0;

    /// Gets the words for the user when nothing on this desktop could do what was asked. Set once, and called
    /// on the main thread, during the call that asked or later.
    std::function<void(const QString& words)> reportFailure = [](const QString& /*words*/) {};
};

} // namespace orbel

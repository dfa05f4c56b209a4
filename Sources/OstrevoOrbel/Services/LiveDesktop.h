#pragma once

#include "Ports/Desktop.h"

#include <functional>
#include <optional>
#include <QString>
#include <QUrl>

namespace orbel {

/// The desktop over D-Bus and its own openers.
class LiveDesktop final : public Desktop {
public:
    void open(const std::string& path) override;
    void showInFileManager(const std::string& path) override;
    bool hasTerminal() override;
    void openTerminal(const std::string& path) override;
    void openTrash(const std::string& itemsFolder) override;
    void openAddress(const QString& address) override;
    void copyText(const QString& text) override;

private:
    /// `failed` is called where no program has opened the address, which can be known only later.
    void openUrl(const QUrl& url, const std::function<void()>& failed);

    const QString& terminal();

    std::optional<QString> terminal_; ///< once looked for; empty for none
};

} // namespace orbel

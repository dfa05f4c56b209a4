#include "Services/AutostartLoginItem.h"

#include "Services/ApplicationId.h"
#include "Util/PathText.h"
#include "Util/ReadFile.h"

#include <filesystem>
#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <system_error>
#include <utility>

namespace orbel {

AutostartLoginItem::AutostartLoginItem(std::string folder, std::string program)
    : folder_(std::move(folder)),
      file_(joinedPath(folder_, std::string(ApplicationId::desktopId) + ".desktop")),
      program_(std::move(program)) {}

std::shared_ptr<LoginItem> AutostartLoginItem::ofThisUser() {
    const auto config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::make_shared<AutostartLoginItem>(
        joinedPath(QFile::encodeName(config).toStdString(), "autostart"),
        QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString());
}

bool AutostartLoginItem::isEnabled() const {
    const auto text = readFile(file_);
    // Desktops switch an entry off with this line as well.
    return text && text->find("\nHidden=true") == std::string::npos;
}

bool AutostartLoginItem::setEnabled(bool enabled) {
    std::error_code error;
    if (!enabled) {
        std::filesystem::remove(file_, error);
        return !error;
    }
    std::filesystem::create_directories(folder_, error);
    QSaveFile file(QFile::decodeName(file_.c_str()));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QByteArray::fromStdString("[Desktop Entry]\n"
                                         "Type=Application\n"
                                         "Version=1.4\n"
                                         "Name=Ostrevo Vanto\n"
                                         "Comment=Measure first. Change safely. Always reversible.\n"
                                         "Icon="
                                         + std::string(ApplicationId::desktopId)
                                         + "\n"
                                           "Exec="
                                         + execWord(program_) + "\n"));
    return file.commit();
}

std::string execWord(const std::string& path) {
    std::string word = "\"";
    for (const char byte : path) {
        switch (byte) {
        case '\\':
            word += R"(\\\\)"; // escaped once as a word and once more as a value of the file
            break;
        case '"':
        case '`':
        case '$':
            word += "\\\\";
            word += byte;
            break;
        case '%':
            word += "%%";
            break;
        default:
            word += byte;
        }
    }
    return word + '"';
}

} // namespace orbel

#include "CommandLine.h"
#include "Launch/LaunchOptions.h"
#include "Services/Application.h"

#include <QtPlugin>
#include <string>
#include <vector>

// The window's QML is a plugin in this very program.
Q_IMPORT_PLUGIN(OstrevoOrbelPlugin)

int main(int count, char** words) {
    const std::vector<std::string> arguments(words, words + count);
    orbel::runCommandIfRequested(arguments, orbel::windowHelp);
    return orbel::runApplication(count, words);
}

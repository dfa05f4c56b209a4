#include "CommandLine.h"

#include <string>
#include <vector>

int main(int count, char** words) {
    const std::vector<std::string> arguments(words, words + count);
    orbel::runCommandLine(arguments);
}

#include "Commands/RootScan.h"

#include "Commands/CommandOutput.h"
#include "Scan/TreeScanner.h"

#include <filesystem>
#include <system_error>

namespace orbel {

ScanResult scanOfRoot(const std::string& root) {
    const ScanCancellation nobodyCancels;
    auto result = TreeScanner::scan(root, std::nullopt, nobodyCancels, nullptr);
    if (result.tree.count() > 0)
        return result;
    std::error_code error;
    static_cast<void>(std::filesystem::status(root, error));
    say(root + ": " + (error ? error.message() : "could not be read"));
    finish("", ExitStatus::incomplete);
}

} // namespace orbel

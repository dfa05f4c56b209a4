#pragma once

#include "ChangeRequest.h"
#include "Delete/DeletionItem.h"

#include <string>

namespace orbel {

class SafetyPolicy;
class ScanCancellation;

/// `--trash`: moves what the request names to the Trash, prints the report as JSON and ends the process. With
/// `isDryRun` every check is made and nothing is written anywhere.
[[noreturn]] void runTrashCommand(const ChangeRequest& request);

/// The item that a word of the command line names: in the real path of its folder what is called by its last
/// component, itself and never what a link leads to. What may not be moved is not measured; it is an item
/// with its reason, and so is what does not exist.
DeletionItem itemNamed(const std::string& word, const SafetyPolicy& policy,
                       const ScanCancellation& cancellation);

} // namespace orbel

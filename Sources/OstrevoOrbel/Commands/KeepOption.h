#pragma once

#include "Delete/DeletionItem.h"

#include <expected>
#include <functional>
#include <span>
#include <string>

namespace orbel {

/// The regular file at `path`, a link itself and never what it leads to, as a copy to keep. The error says
/// why it cannot be one.
std::expected<KeptCopy, std::string> keptCopyAt(const std::string& path);

/// Lets every item move only while `keep` stays as it is, and blocks those that are not the same in every
/// byte; reads all files of that size. Returns an item that is `keep` itself, under any path or as any other
/// hard link of it, and changes nothing then; null when there is none. `isCancelled` is asked while
/// files are read: what was not compared is blocked.
const DeletionItem* requireCopies(const KeptCopy& keep, std::span<DeletionItem> items,
                                  const std::function<bool()>& isCancelled);

} // namespace orbel

#pragma once

#include <string>

namespace orbel::platform {

/// Names the calling thread for debuggers and process viewers. Longer names are cut to what the system takes.
void nameThisThread(const std::string& name);

/// Forbids the file system to fetch cloud-only files from the network because this thread lists or reads
/// them. Does nothing where the system has no such files.
void forbidMaterialisationOnThisThread();

/// Lowers the priority of the calling thread, and on Linux of those that it starts from now on: while other
/// threads want the processor too, these get about a third of the time that those get.
void giveWayOnThisThread();

/// The number of processors this process may run on, at least 1.
int activeProcessorCount();

} // namespace orbel::platform

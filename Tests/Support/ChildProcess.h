#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace orbel::test {

/// Runs `body` in a child process, for what must not outlive it: another user, mounts, limits. Expectations
/// in it count as the test's own. False, with the failure recorded, when one failed or the child died.
bool inChildProcess(const std::function<void()>& body);

/// The same in this many child processes at once, each told its number from 0.
bool inChildProcesses(std::size_t count, const std::function<void(std::size_t)>& body);

/// Runs `body` in a child process that goes on by itself until it is killed.
int startChildProcess(const std::function<void()>& body);
/// Ends such a child process with no chance to clean up, and waits for its end.
void killChildProcess(int process);

/// Whether this process may mount file systems and become another user. Tests that need it skip loudly
/// without.
bool isRoot();

/// In a child process: gives up root for an ordinary user's rights, for good.
void becomeOtherUser();

/// In a child process of root: the programs that it starts are held to the permissions of files, as an
/// ordinary user's are. Unlike another user's, they run wherever the checkout lies.
void holdProgramsToPermissions();

/// In a child process: gets a mount table of its own, which nobody else sees and which goes with the process.
void useOwnMountTable();

/// In a child process with its own mount table: mounts a fresh tmpfs of this size on `folder`.
void mountTmpfs(const char* folder, const std::string& size = "1m");
/// The same for a second view of `source` on `target`.
void bindMount(const char* source, const char* target);
/// The same for a file system whose server never answers: a process that asks about it waits until it is
/// killed.
void mountDead(const std::string& folder);
/// The same for what `upper` has over `lower`; both are folders, `work` an empty one beside `upper`. `lower`
/// may be several, with colons between them. Files show the devices and inodes that they have in their layer.
void mountOverlay(const std::string& lower, const std::string& upper, const std::string& work,
                  const std::string& target);

} // namespace orbel::test

#pragma once

#include <functional>
#include <string>

#include <sys/types.h>

namespace orbel::test {

/// A process of another name that does something, then waits; it is ended when this goes.
class OtherProcess {
public:
    /// Starts it and returns when `prepare` has run in it. `name` is what it calls itself, of at most 15
    /// bytes.
    OtherProcess(const std::string& name, const std::function<void()>& prepare);
    ~OtherProcess();
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    int pid() const { return pid_; }

private:
    pid_t pid_ = -1;
};

/// For `prepare`: opens the file and keeps it open.
void keepOpen(const std::string& path);
/// The same, but only a mapping of the file is kept.
void keepMapped(const std::string& path);

} // namespace orbel::test

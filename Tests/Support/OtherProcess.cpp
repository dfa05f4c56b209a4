#include "Support/OtherProcess.h"

#include "Platform/Threads.h"

#include <array>
#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel::test {

OtherProcess::OtherProcess(const std::string& name, const std::function<void()>& prepare) {
    std::array<int, 2> ready{};
    if (::pipe(ready.data()) != 0)
        throw std::runtime_error("pipe");
    pid_ = ::fork();
    if (pid_ == 0) {
        platform::nameThisThread(name);
        try {
            prepare();
        } catch (...) {
            ::_exit(1);
        }
        static_cast<void>(::write(ready[1], "x", 1));
        while (true)
            ::pause();
    }
    ::close(ready[1]);
    char byte = 0;
    const bool isReady = pid_ > 0 && ::read(ready[0], &byte, 1) == 1;
    ::close(ready[0]);
    if (!isReady)
        throw std::runtime_error("the other process failed to start");
}

OtherProcess::~OtherProcess() {
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
}

void keepOpen(const std::string& path) {
    if (::open(path.c_str(), O_RDONLY) < 0)
        throw std::runtime_error("open");
}

void keepMapped(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY);
    if (file < 0 || ::mmap(nullptr, 1, PROT_READ, MAP_PRIVATE, file, 0) == MAP_FAILED)
        throw std::runtime_error("mmap");
    ::close(file);
}

} // namespace orbel::test

#include "Commands/Interruption.h"

#include <cerrno>
#include <csignal>
#include <string_view>

#include <unistd.h>

namespace orbel {

namespace {

constinit ScanCancellation token;

// A signal interrupts the program anywhere, so these two neither allocate nor lock.

void onSignalDuringScan(int) {
    token.cancel();
}

void onSignalDuringChange(int) {
    const int before = errno;
    token.cancel();
    constexpr std::string_view words = "orbel: Stopping after this item\n";
    static_cast<void>(::write(STDERR_FILENO, words.data(), words.size()));
    errno = before;
}

const ScanCancellation& cancelOnInterrupt(void (*handler)(int)) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = handler;
        // The calls of the item in progress are to go on as if nothing had happened.
        action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
        static_cast<void>(sigemptyset(&action.sa_mask)); // a macro on some systems
        ::sigaction(signal, &action, nullptr);
    }
    return token;
}

} // namespace

const ScanCancellation& stopAfterThisItemOnInterrupt() {
    return cancelOnInterrupt(onSignalDuringChange);
}

const ScanCancellation& stopScanOnInterrupt() {
    return cancelOnInterrupt(onSignalDuringScan);
}

} // namespace orbel

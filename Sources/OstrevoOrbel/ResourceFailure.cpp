#include "ResourceFailure.h"

#include "Commands/CommandOutput.h"

#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>
#include <system_error>

#include <unistd.h>

namespace orbel {

namespace {

std::terminate_handler before = nullptr;

/// Allocates nothing.
[[noreturn]] void endWith(std::string_view line) {
    static_cast<void>(::write(STDERR_FILENO, line.data(), line.size()) == 0);
    std::_Exit(ExitStatus::incomplete);
}

void onTerminate() {
    try {
        if (const auto exception = std::current_exception())
            std::rethrow_exception(exception);
    } catch (const std::bad_alloc&) {
        endWith("orbel: There is not enough memory\n");
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::resource_unavailable_try_again)
            endWith("orbel: The system has no thread to give: too many run, or there is too little memory\n");
    } catch (...) { // NOLINT(bugprone-empty-catch): the handler before tells of it
    }
    before();
    std::abort();
}

} // namespace

void endPlainlyWithoutResources() {
    before = std::set_terminate(onTerminate);
}

} // namespace orbel

#pragma once

#include <string>
#include <string_view>

namespace orbel {

/// Advice where a refused item can be managed instead. Not instantiable.
struct ManageHint {
    ManageHint() = delete;

    /// What to show as the reason for a refused path: a hint where one is known, else the refusal as it is.
    static std::string explain(std::string_view path, const std::string& refusal, std::string_view homePath);
};

} // namespace orbel

#pragma once

#include "Safety/FileStamp.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace orbel {

/// What the safety policy says of one item.
class SafetyDecision {
public:
    struct Allowed {
        std::string realPath; ///< in visible form
        FileStamp stamp;      ///< captured during this very check

        bool operator==(const Allowed&) const = default;
    };

    static SafetyDecision allowed(std::string realPath, const FileStamp& stamp) {
        return SafetyDecision(Allowed{std::move(realPath), stamp});
    }
    static SafetyDecision refused(std::string reason) { return SafetyDecision(std::move(reason)); }

    bool isAllowed() const { return std::holds_alternative<Allowed>(outcome_); }
    /// Null when refused.
    const Allowed* allowance() const { return std::get_if<Allowed>(&outcome_); }
    /// Why the item must not be moved, as the user reads it; absent when it may be.
    std::optional<std::string> refusal() const {
        const auto* reason = std::get_if<std::string>(&outcome_);
        return reason == nullptr ? std::nullopt : std::optional(*reason);
    }

    bool operator==(const SafetyDecision&) const = default;

private:
    explicit SafetyDecision(std::variant<Allowed, std::string> outcome) : outcome_(std::move(outcome)) {}

    std::variant<Allowed, std::string> outcome_;
};

} // namespace orbel

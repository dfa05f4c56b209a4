#include "ChangeRequest.h"

#include "Util/PathText.h"

#include <algorithm>

namespace orbel {

namespace {

using Outcome = std::expected<std::optional<ChangeRequest>, std::string>;

std::optional<ChangeRequest::Kind> commandNamed(const std::string& word) {
    if (word == "--trash")
        return ChangeRequest::Kind::trash;
    if (word == "--put-back")
        return ChangeRequest::Kind::putBack;
    return std::nullopt;
}

bool isCommand(const std::string& word) {
    return commandNamed(word).has_value();
}

/// "." and ".." name whatever the current folder is, not an item in it.
bool namesAnItem(const std::string& path) {
    const auto name = lastPathComponent(path);
    return !name.empty() && name != "." && name != "..";
}

std::optional<std::string> wrongUsage(const ChangeRequest& request) {
    if (request.kind == ChangeRequest::Kind::putBack) {
        if (request.operands.size() != 1 || request.operands.front().empty())
            return "--put-back takes one ID: that of an entry or a session in the journal, or \"last\"";
        return std::nullopt;
    }
    if (request.operands.empty())
        return "--trash needs at least one PATH";
    const auto bad = std::ranges::find_if_not(request.operands, namesAnItem);
    if (bad != request.operands.end())
        return "\"" + *bad + "\" is not the path of an item";
    return std::nullopt;
}

} // namespace

Outcome changeRequestIn(std::span<const std::string> arguments) {
    const auto words = arguments.subspan(arguments.empty() ? 0 : 1);
    const auto switches = switchesIn(words);
    const auto command = std::ranges::find_if(switches, isCommand);
    if (command == switches.end())
        return std::nullopt;

    ChangeRequest request{.kind = commandNamed(*command).value_or(ChangeRequest::Kind::trash),
                          .operands = {}};
    bool isAfterCommand = false;
    for (const auto& word : switches) {
        if (isCommand(word) && !isAfterCommand)
            isAfterCommand = true;
        else if (word == "--dry-run" && request.kind == ChangeRequest::Kind::trash)
            request.isDryRun = true;
        else if (word.starts_with('-'))
            return std::unexpected("\"" + word + "\" does not go together with " + *command);
        else if (!isAfterCommand)
            return std::unexpected("\"" + word + "\" stands before " + *command);
        else
            request.operands.push_back(word);
    }
    if (switches.size() < words.size()) {
        const auto rest = words.subspan(switches.size() + 1);
        request.operands.insert(request.operands.end(), rest.begin(), rest.end());
    }
    if (const auto wrong = wrongUsage(request))
        return std::unexpected(*wrong);
    return request;
}

std::span<const std::string> switchesIn(std::span<const std::string> arguments) {
    return {arguments.begin(), std::ranges::find(arguments, "--")};
}

} // namespace orbel

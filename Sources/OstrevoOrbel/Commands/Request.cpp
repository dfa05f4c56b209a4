#include "Commands/Request.h"

#include "Commands/CommandTable.h"
#include "Commands/NearestWord.h"

#include <algorithm>

namespace orbel {

namespace {

using Words = std::span<const std::string>;

Words withoutProgram(Words arguments) {
    return arguments.subspan(arguments.empty() ? 0 : 1);
}

/// A word taken apart at its first "=".
struct SwitchWord {
    std::string_view name;
    std::optional<std::string> value;

    explicit SwitchWord(std::string_view word) : name(word.substr(0, word.find('='))) {
        if (name.size() < word.size())
            value = word.substr(name.size() + 1);
    }
};

/// A single "-" stands for standard input or output.
bool isSwitch(std::string_view word) {
    return word.size() > 1 && word.starts_with('-');
}

std::string inQuotes(std::string_view word) {
    return "\"" + std::string(word) + "\"";
}

std::string didYouMean(std::string_view word, std::span<const std::string_view> known) {
    const auto nearest = nearestWord(word, known);
    return nearest ? ": did you mean " + std::string(*nearest) + "?" : "";
}

std::string titleOf(const Command& command) {
    return command.name.empty() ? "orbel" : std::string(command.name);
}

/// Where no command is named, the word may have been meant for one.
std::string unknownCommand(const Command& nameless, std::string_view name) {
    std::vector<std::string_view> known{"--help", "--version"};
    for (const auto* command : commandTable())
        known.push_back(command->name);
    for (const auto& option : nameless.options)
        known.push_back(option.name);
    return inQuotes(name) + " is neither a command nor an option" + didYouMean(name, known);
}

std::string unknownOption(const Command& command, std::string_view name) {
    if (command.name.empty())
        return unknownCommand(command, name);
    const auto start = inQuotes(name) + " is not an option of " + std::string(command.name);
    if (command.options.empty())
        return start + ": it has none";
    std::vector<std::string_view> known;
    std::string list;
    for (const auto& option : command.options) {
        known.push_back(option.name);
        list += (list.empty() ? ": it has " : ", ") + std::string(option.name);
    }
    const auto meant = didYouMean(name, known);
    return start + (meant.empty() ? list : meant);
}

std::string wrongOperands(const Command& command, Words operands) {
    const auto taken = " takes " + std::string(command.operands.empty() ? "no operand" : command.operands);
    const auto rule = titleOf(command) + taken;
    return operands.size() > command.mostOperands
               ? inQuotes(operands[command.mostOperands]) + " is a word too many: " + rule
               : rule;
}

/// Reads the words before "--" one by one.
class StrictReader {
public:
    StrictReader(const Command& command, Words switches)
        : command_(command), rest_(switches), isAfterCommand_(command.name.empty()) {}

    std::expected<Request, std::string> read() {
        while (!rest_.empty()) {
            const std::string& word = rest_.front();
            rest_ = rest_.subspan(1);
            if (auto wrong = isSwitch(word) ? readSwitch(SwitchWord(word)) : readOperand(word))
                return std::unexpected(*std::move(wrong));
        }
        return std::move(request_);
    }

private:
    using Wrong = std::optional<std::string>;

    Wrong readOperand(const std::string& word) {
        if (!isAfterCommand_)
            return inQuotes(word) + " stands before " + std::string(command_.name);
        request_.operands.push_back(word);
        return std::nullopt;
    }

    Wrong readSwitch(SwitchWord word) {
        if (word.name == command_.name && !isAfterCommand_) {
            isAfterCommand_ = true;
            if (word.value)
                request_.operands.push_back(*std::move(word.value));
            return std::nullopt;
        }
        if (const auto* other = commandNamed(word.name))
            return command_.name.empty()
                       ? wrongOperands(*other, {})
                       : inQuotes(word.name) + " is a second command beside " + std::string(command_.name);
        const auto option = std::ranges::find(command_.options, word.name, &CommandOption::name);
        if (option == command_.options.end())
            return unknownOption(command_, word.name);
        return readOption(*option, std::move(word.value));
    }

    Wrong readOption(const CommandOption& option, std::optional<std::string> value) {
        const std::string name(option.name);
        if (option.takes.empty() && value)
            return name + " takes no value";
        if (!option.takes.empty() && !value) {
            // A value that begins so is more likely a forgotten one; "--option=--value" can be said.
            if (rest_.empty() || rest_.front().starts_with("--"))
                return name + " needs a value: " + std::string(option.takes);
            value = rest_.front();
            rest_ = rest_.subspan(1);
        }
        if (!option.isRepeatable && request_.has(name))
            return name + " is there twice";
        request_.options.emplace(name, value.value_or(""));
        return std::nullopt;
    }

    const Command& command_;
    Words rest_;
    bool isAfterCommand_;
    Request request_;
};

} // namespace

std::optional<std::string> Request::value(std::string_view option) const {
    const auto found = options.find(option);
    return found == options.end() ? std::nullopt : std::optional(found->second);
}

std::vector<std::string> Request::values(std::string_view option) const {
    std::vector<std::string> all;
    const auto [first, last] = options.equal_range(option);
    for (auto i = first; i != last; ++i)
        all.push_back(i->second);
    return all;
}

const Command* strictCommandIn(Words arguments) {
    const Command* first = nullptr;
    for (const auto& word : switchesIn(withoutProgram(arguments))) {
        const auto* command = commandNamed(SwitchWord(word).name);
        if (command != nullptr && command->isChange)
            return command;
        if (first == nullptr)
            first = command;
    }
    return first != nullptr && !first->isLenient ? first : nullptr;
}

std::expected<Request, std::string> strictRequest(const Command& command, Words arguments) {
    const auto words = withoutProgram(arguments);
    const auto switches = switchesIn(words);
    auto request = StrictReader(command, switches).read();
    if (!request)
        return request;
    auto& operands = request->operands;
    if (switches.size() < words.size()) {
        const auto rest = words.subspan(switches.size() + 1);
        operands.insert(operands.end(), rest.begin(), rest.end());
    }
    if (operands.size() < command.fewestOperands || operands.size() > command.mostOperands)
        return std::unexpected(wrongOperands(command, operands));
    if (std::ranges::find(operands, "") != operands.end())
        return std::unexpected("A word of " + titleOf(command) + " is empty");
    return request;
}

std::optional<Request> lenientRequest(const Command& command, Words arguments) {
    Request request;
    if (command.operands.empty()) {
        if (!contains(arguments, command.name))
            return std::nullopt;
    } else {
        auto operand = valueAfter(arguments, command.name);
        if (!operand)
            return std::nullopt;
        request.operands.push_back(*std::move(operand));
    }
    for (const auto& option : command.options) {
        if (option.takes.empty()) {
            if (contains(arguments, option.name))
                request.options.emplace(option.name, "");
        } else {
            auto values = valuesAfter(arguments, option.name);
            values.resize(option.isRepeatable ? values.size() : std::min(values.size(), std::size_t{1}));
            for (auto& value : values)
                request.options.emplace(option.name, std::move(value));
        }
    }
    return request;
}

Words switchesIn(Words arguments) {
    return {arguments.begin(), std::ranges::find(arguments, "--")};
}

std::optional<std::string> valueAfter(Words arguments, std::string_view name) {
    auto values = valuesAfter(arguments, name);
    return values.empty() ? std::nullopt : std::optional(std::move(values.front()));
}

std::vector<std::string> valuesAfter(Words arguments, std::string_view name) {
    std::vector<std::string> values;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        SwitchWord word(arguments[i]);
        if (word.name != name)
            continue;
        if (word.value)
            values.push_back(*std::move(word.value));
        else if (++i < arguments.size())
            values.push_back(arguments[i]);
    }
    return values;
}

bool contains(Words arguments, std::string_view name) {
    return std::ranges::find(arguments, name) != arguments.end();
}

} // namespace orbel

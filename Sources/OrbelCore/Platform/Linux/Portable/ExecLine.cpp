#include "Platform/Linux/Portable/ExecLine.h"

#include "Util/PathText.h"

#include <algorithm>
#include <span>
#include <utility>

namespace orbel::platform {

namespace {

/// Takes an Exec value apart, from its beginning to its end.
class Reader {
public:
    explicit Reader(std::string_view text) : text_(text) {}

    std::optional<std::vector<std::string>> words() {
        for (; !isBad_ && at_ < text_.size(); ++at_) {
            const char c = text_[at_];
            if (c == ' ' || c == '\t' || c == '\n')
                endWord();
            else if (c == '"' || c == '\'')
                takeQuoted(c);
            else if (c == '%')
                takeFieldCode();
            else if (c == '\\' && at_ + 1 < text_.size())
                add(text_[++at_]);
            else
                add(c);
        }
        endWord();
        if (isBad_ || words_.empty())
            return std::nullopt;
        return std::move(words_);
    }

private:
    void add(char c) {
        word_ += c;
        isInWord_ = true;
    }

    void endWord() {
        if (isInWord_)
            words_.push_back(std::exchange(word_, {}));
        isInWord_ = false;
    }

    void takeQuoted(char quote) {
        isInWord_ = true; // quotes with nothing between them are a word too
        while (++at_ < text_.size() && text_[at_] != quote) {
            constexpr std::string_view escapable = "\"`$\\";
            const bool isEscape = quote == '"' && text_[at_] == '\\' && at_ + 1 < text_.size()
                                  && escapable.find(text_[at_ + 1]) != std::string_view::npos;
            if (text_[at_] == '%' && at_ + 1 < text_.size())
                takeFieldCode();
            else
                add(text_[isEscape ? ++at_ : at_]);
        }
        isBad_ = isBad_ || at_ >= text_.size();
    }

    void takeFieldCode() {
        constexpr std::string_view codes = "fFuUdDnNickvm";
        const char code = at_ + 1 < text_.size() ? text_[++at_] : '\0';
        if (code == '%')
            add('%');
        else if (codes.find(code) == std::string_view::npos)
            isBad_ = true;
    }

    std::string_view text_;
    std::size_t at_ = 0;
    std::string word_;
    bool isInWord_ = false;
    bool isBad_ = false;
    std::vector<std::string> words_;
};

bool isAssignment(std::string_view word) {
    return word.find('=') != std::string_view::npos && !word.starts_with('=') && !word.starts_with('-');
}

/// The words from the program on; absent when the environment decides which program that is.
std::optional<std::span<const std::string>> withoutEnvironment(std::span<const std::string> words) {
    if (lastPathComponent(words.front()) != "env")
        return words;
    words = words.subspan(1);
    while (!words.empty() && (isAssignment(words.front()) || words.front() == "-u")) {
        if (words.front().starts_with("PATH="))
            return std::nullopt;
        words = words.subspan(std::min<std::size_t>(words.front() == "-u" ? 2 : 1, words.size()));
    }
    if (words.empty() || words.front().starts_with('-'))
        return std::nullopt;
    return words;
}

std::size_t dotsIn(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count(text, '.'));
}

ExecCommand commandOf(ExecCommand::Kind kind, std::string_view name, std::span<const std::string> arguments) {
    return {.kind = kind, .name = std::string(name), .arguments = {arguments.begin(), arguments.end()}};
}

} // namespace

std::optional<std::vector<std::string>> execWords(std::string_view exec) {
    return Reader(exec).words();
}

std::optional<ExecCommand> execCommand(std::string_view exec) {
    const auto all = execWords(exec);
    if (!all)
        return std::nullopt;
    const auto found = withoutEnvironment(*all);
    if (!found || found->front().empty())
        return std::nullopt;
    const auto words = *found;
    const auto program = lastPathComponent(words.front());
    if ((program != "flatpak" && program != "snap") || words.size() < 2 || words[1] != "run")
        return commandOf(ExecCommand::Kind::program, words.front(), words.subspan(1));

    const auto isOption = [](const std::string& word) { return word.starts_with('-'); };
    const auto name = std::ranges::find_if_not(words.begin() + 2, words.end(), isOption);
    if (name == words.end())
        return std::nullopt;
    const std::span<const std::string> rest(name + 1, words.end());
    if (program == "snap")
        return commandOf(ExecCommand::Kind::snap, name->substr(0, name->find('.')), rest);
    // An id has two dots at least; else it is the value of an option.
    constexpr std::size_t fewestDots = 2;
    const auto id = name->substr(0, name->find('/'));
    if (dotsIn(id) < fewestDots)
        return std::nullopt;
    return commandOf(ExecCommand::Kind::flatpak, id, rest);
}

} // namespace orbel::platform

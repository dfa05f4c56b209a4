#include "Commands/CommandHelp.h"

#include "Commands/CommandTable.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace orbel {

namespace {

constexpr std::size_t width = 80;
constexpr std::size_t helpColumn = 16;

constexpr std::string_view start = R"(Usage: orbel [ROOT] [OPTION]...
       orbel COMMAND [OPTION]...

Measures where the space on a disk went, moves what you name to the Trash, and
puts it back. Nothing is ever deleted.

)";

constexpr std::string_view end = R"(  -h, --help    Print this text.
  -V, --version Print the version.

--exclude leaves out of ROOT, as if it were not there, what has a name that
matches PATTERN, or where PATTERN has a slash in it, a path below ROOT (the whole
path when it begins with one). Wildcards are those of the shell. It may be given
more than once; the report then says how much was left out.

The value of an option may stand in the same word: --top=5. "--" ends the
options, so that names may begin with "-". What a command does not understand is
an error, and nothing is touched; only --scan-json, --duplicates-json and
--leftovers-dry-run ignore it.

Results go to standard output, words to standard error. A name that is not valid
text is printed with replacement characters and, beside it, in base64. What
cannot be read is counted in a report and is no failure. The status is 0 when
all was done, 1 when something was skipped, not put back, not measured or not
printed, 2 when the command was not understood.
)";

/// Appends pieces with blanks between them, going on in the help's column where a line is full. `line` is how
/// much of the last line is taken.
void appendWrapped(std::string& text, std::size_t line, const std::vector<std::string>& pieces) {
    bool isFirst = true;
    for (const auto& piece : pieces) {
        if (!isFirst && line + 1 + piece.size() > width) {
            text += "\n" + std::string(helpColumn, ' ');
            line = helpColumn;
        } else if (!isFirst) {
            text += ' ';
            ++line;
        }
        text += piece;
        line += piece.size();
        isFirst = false;
    }
}

std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words;
    for (std::size_t at = 0; at < text.size();) {
        const auto blank = std::min(text.find(' ', at), text.size());
        words.emplace_back(text.substr(at, blank - at));
        at = blank + 1;
    }
    return words;
}

/// "--scan-json ROOT", "[--top N]", "[--growth]"
std::vector<std::string> synopsisOf(const Command& command) {
    std::vector<std::string> pieces{std::string(command.name)};
    if (!command.operands.empty())
        pieces.front() += (command.name.empty() ? "" : " ") + std::string(command.operands);
    for (const auto& option : command.options)
        pieces.push_back("[" + std::string(option.name) + (option.takes.empty() ? "" : " ")
                         + std::string(option.takes) + "]" + (option.isRepeatable ? "..." : ""));
    return pieces;
}

void appendCommand(std::string& text, const Command& command) {
    text += "  ";
    appendWrapped(text, 2, synopsisOf(command));
    text += "\n";
    if (command.help.empty())
        return;
    text += std::string(helpColumn, ' ');
    appendWrapped(text, helpColumn, wordsOf(command.help));
    text += "\n";
}

} // namespace

std::string commandHelp() {
    std::string text(start);
    appendCommand(text, tableCommand);
    for (const auto* command : commandTable())
        appendCommand(text, *command);
    return text + std::string(end);
}

} // namespace orbel

#include "Util/ShellWord.h"

#include "Util/Utf8.h"

#include <algorithm>

namespace orbel {

namespace {

bool isControl(char byte) {
    return static_cast<unsigned char>(byte) < ' ' || byte == '\x7F';
}

bool isPlain(char byte) {
    constexpr std::string_view others = "/._-+,:@%";
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9')
           || others.find(byte) != std::string_view::npos;
}

/// Bash's $'…', in which any byte can be written.
std::string escapedWord(std::string_view bytes) {
    std::string word = "$'";
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        if (byte == '\'' || byte == '\\') {
            word += '\\';
            word += byte;
        } else if (isControl(byte) || value >= 0x80) {
            word += '\\';
            for (const int shift : {6, 3, 0})
                word += static_cast<char>('0' + ((value >> shift) & 7));
        } else {
            word += byte;
        }
    }
    return word + '\'';
}

} // namespace

std::string shellWord(std::string_view bytes) {
    if (!bytes.empty() && std::ranges::all_of(bytes, isPlain))
        return std::string(bytes);
    if (!isValidUtf8(bytes) || std::ranges::any_of(bytes, isControl))
        return escapedWord(bytes);
    std::string word = "'";
    for (const char byte : bytes) {
        if (byte == '\'')
            word += "'\\''";
        else
            word += byte;
    }
    return word + '\'';
}

} // namespace orbel

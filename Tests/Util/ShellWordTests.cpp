#include "Support/RunProgram.h"
#include "Util/ShellWord.h"
#include "Util/Utf8.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

TEST(ShellWord, IsReadBackByTheShellWhateverTheBytes) {
    for (const std::string name : {"/plain/a-b_c.txt", "two words", "it's \"quoted\" $HOME `x` \\", "", "~",
                                   "line\nfeed\ttab", "Käse", "not \xFFutf8 'x'", "\x1B[31m"}) {
        const auto word = shellWord(name);
        const auto run = test::runProgram({"bash", "-c", "printf %s " + word});
        EXPECT_EQ(run.output, name) << word;
        EXPECT_TRUE(isValidUtf8(word)) << word;
        EXPECT_EQ(word.find_first_of("\n\t\x1B"), std::string::npos) << word;
    }
    EXPECT_EQ(shellWord("/plain/a-b_c.txt"), "/plain/a-b_c.txt");
}

} // namespace
} // namespace orbel

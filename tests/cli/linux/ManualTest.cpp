// Manual page and completions; that for bash in a bash that has nothing else to help it. Only here:
// a Windows build has no bash.

#include "cli/manual/Completions.h"
#include "cli/manual/ManPage.h"
#include "tests/cli/ClientRun.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace brevint::cli {
namespace {

TEST(Manual, HoldsEveryCommandAndOption) {
    const std::vector<CommandEntry> table = ReadOptionTable(CommandLine());
    for (std::string text :
         {ManPage(table), BashCompletion(table), ZshCompletion(table), FishCompletion(table)}) {
        std::erase(text, '\\'); // roff has hyphens escaped
        for (const CommandEntry& command : table) {
            EXPECT_NE(std::string::npos, text.find(command.name)) << command.name << text;
            for (const OptionEntry& option : command.options) {
                const std::string name = option.names.back(); // fish has it without hyphens
                EXPECT_NE(std::string::npos, text.find(name.substr(name.find_first_not_of('-'))));
            }
        }
    }
}

TEST(Manual, CompletesInBash) {
    const test::TempFolder folder;
    const std::string script = folder.Folder() / "script";
    const std::string bash = BashCompletion(ReadOptionTable(CommandLine()));
    for (const auto& [words, reply] : {std::pair{"brevint g", "get"},
                                       {"brevint --url http : //h : 80/ whoa", "whoami"},
                                       {"brevint job x --of = r", "replace"}}) {
        test::WriteFile(
            script, bash + "COMP_WORDS=(" + words + "); COMP_CWORD=${#COMP_WORDS[@]}\n" +
                        "((COMP_CWORD--)); _brevint; [[ ${COMPREPLY[*]} == '" + reply + "' ]]\n");
        EXPECT_EQ(0, std::system(("bash " + script).c_str())) << words;
    }
}

} // namespace
} // namespace brevint::cli

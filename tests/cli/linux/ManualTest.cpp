// The completion for bash, in a bash that has nothing else to help it. Only here: a Windows build
// has no bash.

#include "cli/manual/Completions.h"
#include "tests/cli/ClientRun.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace brevint::cli {
namespace {

TEST(Completion, IsTriedInBash) {
    const test::TempFolder folder;
    const std::string script = folder.Folder() / "script";
    for (const auto& [words, reply] : {std::pair{"brevint g", "get"},
                                       {"brevint ls --time", "--timeout"},
                                       {"brevint put x --no", "--no-wait"},
                                       {"brevint --url http : //h : 80/ whoa", "whoami"},
                                       {"brevint job x --of = r", "replace"}}) {
        test::WriteFile(script, BashCompletion() + "COMP_WORDS=(" + words +
                                    "); COMP_CWORD=${#COMP_WORDS[@]}\n" +
                                    "((COMP_CWORD--)); _brevint; [[ ${COMPREPLY[*]} == '" + reply +
                                    "' ]]\n");
        EXPECT_EQ(0, std::system(("bash " + script).c_str())) << words;
    }
}

} // namespace
} // namespace brevint::cli

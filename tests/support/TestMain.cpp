#include "tests/support/Environment.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // The tests talk to this machine only, so the proxies of whoever runs them must not matter.
    for (const auto* name : {"http_proxy", "https_proxy", "all_proxy", "no_proxy", "HTTP_PROXY",
                             "HTTPS_PROXY", "ALL_PROXY", "NO_PROXY"}) {
        brevint::test::ClearVariable(name);
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include "platform/linux/cookies/PublicSuffix.h"

#include <libpsl.h>

namespace platform {

bool IsPublicSuffix(const std::string& domain) {
    // The system's list, which is newer than the one that libpsl was built with, or else that one.
    static const psl_ctx_t* const list = psl_latest(nullptr);
    return psl_is_public_suffix(list, domain.c_str()) != 0;
}

} // namespace platform

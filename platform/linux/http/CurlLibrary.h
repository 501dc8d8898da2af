#pragma once

namespace platform {

/// Makes libcurl usable, once for the process. Throws std::bad_alloc.
void InitializeCurl();

} // namespace platform

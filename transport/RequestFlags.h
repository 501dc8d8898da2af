#pragma once

/// Request flag: a redirect is the reply, not a way to it. The value is that of the platform's
/// INTERNET_FLAG_NO_AUTO_REDIRECT.
inline constexpr int kNoAutoRedirect = 0x200000;

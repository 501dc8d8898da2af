#include "tests/platform/Target.h"

namespace brevint::test::target {

// The tests meet Wine's WinINet. Windows itself is documented to do what the Linux target does.

// Wine takes " = " in the expiry for an unknown attribute and keeps an empty cookie.
const bool kExpiredCookieVanishes = false;
// Wine keeps the whole data as the value of a cookie whose name is empty.
const std::string_view kNamelessCookie = "=n=v";
// Wine leaves the header in place when the new host has no cookies of its own.
const bool kRedirectKeepsCookiesOfHost = false;
// Wine does not know the status.
const bool kFollows308 = false;
// Wine keeps the verb and loses the body.
const bool kBodyTravelsWith307 = false;
// Wine takes it for a part of the path.
const bool kFragmentIsSent = true;
// Wine takes what is left of the number in 16 bits.
const bool kPortHasALimit = false;
// WinINet's own way.
const bool kReadsMayFinishAtOnce = true;

} // namespace brevint::test::target

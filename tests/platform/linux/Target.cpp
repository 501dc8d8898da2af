#include "tests/platform/Target.h"

namespace brevint::test::target {

// The layer over libcurl does what Windows itself documents, wherever that helps the user.

// Signing out relies on it.
const bool kExpiredCookieVanishes = true;
// The data of a cookie set without a name carries its name, which is what callers mean by it.
const std::string_view kNamelessCookie = "n=v";
// Another host must not learn the credentials of the first.
const bool kRedirectKeepsCookiesOfHost = true;
// Windows 10 follows it.
const bool kFollows308 = true;
// A request that keeps its verb is useless without its body.
const bool kBodyTravelsWith307 = true;
// It is for whoever reads the reply.
const bool kFragmentIsSent = false;
// There is no such port.
const bool kPortHasALimit = true;
// One way to complete is easier to get right than two.
const bool kReadsMayFinishAtOnce = false;

} // namespace brevint::test::target

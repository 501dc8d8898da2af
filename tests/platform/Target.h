#pragma once

#include <string_view>

/// Where the two targets differ by intention, and why. Each target defines these in its own folder;
/// everything else in this folder's tests holds on both alike.
namespace brevint::test::target {

/// A cookie that is set to nothing with a past date and blanks around "=" is gone.
extern const bool kExpiredCookieVanishes;
/// How a cookie set under the empty name, with "n=v" as its data, shows in the jar and on the wire.
extern const std::string_view kNamelessCookie;
/// A redirect to another host leaves the cookies of the first host behind.
extern const bool kRedirectKeepsCookiesOfHost;
/// Status 308 is followed like 307.
extern const bool kFollows308;
/// A redirect with 307 carries the body to the new place.
extern const bool kBodyTravelsWith307;
/// The fragment of an address goes on the wire with the rest of it.
extern const bool kFragmentIsSent;
/// An address with a port beyond 65535 is none.
extern const bool kPortHasALimit;
/// An asynchronous read whose bytes are there may finish within the call.
extern const bool kReadsMayFinishAtOnce;

} // namespace brevint::test::target

#include "service/SessionCookies.h"

namespace brevint::service {

SessionCookies ReadSessionCookies(const HttpRequest& request) {
    return {request.Cookie("FedAuth").value_or(""), request.Cookie("FedAuth1").value_or("")};
}

namespace {

void SetCookie(HttpReply& reply, const std::string& cookie) {
    // WinINet of Wine reads no attribute after one that it does not know.
    reply.headers.emplace_back("Set-Cookie", cookie + "; SameSite=Strict");
}

} // namespace

void SetSessionCookies(HttpReply& reply, const SessionCookies& cookies) {
    SetCookie(reply, "FedAuth=" + cookies.fedAuth + "; Path=/");
    SetCookie(reply, "FedAuth1=" + cookies.fedAuth1 + "; Path=/");
}

void ExpireSessionCookies(HttpReply& reply) {
    for (const std::string name : {"FedAuth", "FedAuth1"}) {
        SetCookie(reply, name + "=; Path=/; Expires=Thu, 01 Jan 1970 00:00:00 GMT; Max-Age=0");
    }
}

} // namespace brevint::service

#include "service/SessionCookies.h"

namespace brevint::service {

SessionCookies ReadSessionCookies(const HttpRequest& request) {
    return {request.Cookie("FedAuth").value_or(""), request.Cookie("FedAuth1").value_or("")};
}

void SetSessionCookies(HttpReply& reply, const SessionCookies& cookies) {
    reply.headers.emplace_back("Set-Cookie", "FedAuth=" + cookies.fedAuth + "; Path=/");
    reply.headers.emplace_back("Set-Cookie", "FedAuth1=" + cookies.fedAuth1 + "; Path=/");
}

void ExpireSessionCookies(HttpReply& reply) {
    for (const char* name : {"FedAuth", "FedAuth1"})
        reply.headers.emplace_back(
            "Set-Cookie",
            std::string(name) + "=; Path=/; Expires=Thu, 01 Jan 1970 00:00:00 GMT; Max-Age=0");
}

} // namespace brevint::service

#include "cli/service/SignInRequests.h"

#include "brevint/WebRequest.h"
#include "support/Utf8.h"

namespace brevint::cli {

/// A request whose status is noted when it is asked for.
class SignInRequests::Watched : public WebRequest {
public:
    Watched(const wchar_t* url, WebRequestType type, SignInRequests& watcher)
        : WebRequest(url, type), m_watcher(watcher) {}

    unsigned long GetRequestStatus() override {
        m_watcher.m_lastStatus = WebRequest::GetRequestStatus();
        return m_watcher.m_lastStatus;
    }

private:
    SignInRequests& m_watcher;
};

SignInRequests::SignInRequests(const std::string& serviceUrl, bool insecureHttp)
    : m_service(ParseOrigin(serviceUrl).value_or(Origin())), m_insecureHttp(insecureHttp) {}

IRequest* SignInRequests::Create() {
    return Create(nullptr, WebRequestTypeGet);
}

IRequest* SignInRequests::Create(const wchar_t* url, WebRequestType type) {
    ++m_count;
    m_lastStatus = 0;
    if (m_count > kService) {
        m_refusal = Refuse(Utf8::ToNarrow(url ? url : L""));
    }
    // A request without an address fails without having sent anything.
    return new Watched(m_refusal.empty() ? url : L"", type, *this);
}

std::string SignInRequests::Refuse(const std::string& url) const {
    const std::string subject =
        std::string(m_count == kPortal ? "The service sends the sign-in to"
                                       : "The form of the sign-in page goes to") +
        " \"" + url.substr(0, url.find('?')) + "\", ";
    const std::optional<Origin> origin = ParseOrigin(url);
    if (!origin) {
        return subject + "which is no http or https address.";
    }
    if (!m_insecureHttp && !IsConfidential(*origin)) {
        return subject + "where everything would travel unencrypted over the network.";
    }
    if (m_count > kPortal && (origin->host != m_service.host || origin->port != m_service.port)) {
        return subject + "which is another host or port than the service's.";
    }
    return {};
}

} // namespace brevint::cli

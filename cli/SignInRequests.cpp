#include "cli/SignInRequests.h"

#include "brevint/WebRequest.h"
#include "cli/Utf8.h"

namespace brevint::cli {

/// A request whose status is noted when it is asked for.
class SignInRequests::Watched : public WebRequest {
public:
    Watched(const wchar_t* url, WebRequestType type, SignInRequests& watcher)
        : WebRequest(url, type), watcher_(watcher) {}

    unsigned long GetRequestStatus() override {
        watcher_.lastStatus_ = WebRequest::GetRequestStatus();
        return watcher_.lastStatus_;
    }

private:
    SignInRequests& watcher_;
};

SignInRequests::SignInRequests(const std::string& serviceUrl, bool insecureHttp)
    : service_(ParseOrigin(serviceUrl).value()), insecureHttp_(insecureHttp) {}

IRequest* SignInRequests::Create() {
    return Create(nullptr, WebRequestTypeGet);
}

IRequest* SignInRequests::Create(const wchar_t* url, WebRequestType type) {
    ++count_;
    lastStatus_ = 0;
    if (count_ > kService) {
        refusal_ = Refuse(ToUtf8(url ? url : L""));
    }
    // A request without an address fails without having sent anything.
    return new Watched(refusal_.empty() ? url : L"", type, *this);
}

std::string SignInRequests::Refuse(const std::string& url) const {
    const std::string subject =
        std::string(count_ == kPortal ? "The service sends the sign-in to"
                                      : "The form of the sign-in page goes to") +
        " \"" + url.substr(0, url.find('?')) + "\", ";
    const std::optional<Origin> origin = ParseOrigin(url);
    if (!origin) {
        return subject + "which is no http or https address.";
    }
    if (!insecureHttp_ && !IsConfidential(*origin)) {
        return subject + "where everything would travel unencrypted over the network.";
    }
    if (count_ > kPortal && (origin->host != service_.host || origin->port != service_.port)) {
        return subject + "which is another host or port than the service's.";
    }
    return {};
}

} // namespace brevint::cli

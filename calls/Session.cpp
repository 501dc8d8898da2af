#include "calls/Session.h"

#include "brevint/ErrorCodes.h"
#include "brevint/IRequestInfo.h"
#include "brevint/IdentityResponse.h"
#include "brevint/InternetCache.h"
#include "calls/Calls.h"
#include "calls/ServiceAddress.h"
#include "requests/SignInForms.h"
#include "responses/PortalForm.h"
#include "support/Text.h"
#include "support/Utf8.h"
#include "transport/RequestFlags.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

namespace calls {

namespace {

/// A page that is asked for, or a form that is posted.
class PageRequest final : public IRequestInfo {
public:
    PageRequest(std::wstring url, AcceptType accept) : m_url(std::move(url)), m_accept(accept) {}
    PageRequest(std::wstring url, AcceptType accept, std::wstring form)
        : m_url(std::move(url)), m_accept(accept), m_form(std::move(form)) {}

    std::wstring GetRequestUrl() const override { return m_url; }
    WebRequestType GetRequestType() const override {
        return m_form.empty() ? WebRequestTypeGet : WebRequestTypePost;
    }
    void GetAcceptTypes(std::vector<AcceptType>& types) const override {
        types.push_back(m_accept);
    }
    std::wstring GetHeaders() const override {
        return m_form.empty() ? std::wstring() : std::wstring(kFormContentType) + L"\r\n";
    }
    int GetRequestFlags() const override { return kNoAutoRedirect; }
    std::wstring GetUploadString() const override { return m_form; }
    const std::vector<char>& GetUploadData() const override { return m_noData; }

private:
    const std::wstring m_url;
    const AcceptType m_accept;
    const std::wstring m_form;
    const std::vector<char> m_noData;
};

Failure Refused(FailureKind kind, std::wstring text) {
    Failure failure;
    failure.kind = kind;
    failure.text = std::move(text);
    return failure;
}

std::wstring WithoutQuery(const std::wstring& url) {
    return url.substr(0, url.find(L'?'));
}

/// The sign-ins of a process share its cookie jar: there is one at a time.
std::timed_mutex& OneAtATime() {
    static std::timed_mutex mutex;
    return mutex;
}

/// Counts the sessions that were restored or forgotten, so that a sign-in that was given up does
/// not take away one that came after it.
std::atomic<unsigned>& Changes() {
    static std::atomic<unsigned> changes = 0;
    return changes;
}

void RemoveCookies(const Service& service) {
    // Sign-in sets its cookies for the whole host, and the jar deletes for the folder that it is
    // told.
    CInternetCache jar;
    for (const std::string& folder : FoldersOf(Utf8::ToNarrow(service.Url()))) {
        const std::wstring address = Utf8::ToWide(folder);
        if (!jar.GetCookie(address.c_str()).empty()) {
            jar.DeleteCookie(address.c_str());
        }
    }
}

/// One sign-in: service, portal, service.
class SignInSteps {
public:
    SignInSteps(const CallContext& at, bool insecureHttp)
        : m_at(at), m_insecureHttp(insecureHttp), m_url(at.service.Url()),
          m_service(ParseOrigin(Utf8::ToNarrow(m_url)).value_or(Origin())) {}

    Failure Run(const std::wstring& user, const std::wstring& password) {
        if (Failure failure = AskService(user)) {
            return failure;
        }
        if (m_isSignedIn) {
            return {};
        }
        if (Failure failure = TellPortal(user, password)) {
            return failure;
        }
        return PostToken();
    }

    /// Whether the service may have set cookies.
    bool HasPostedToken() const { return m_hasPostedToken; }

private:
    /// The service's own page leads to the portal, or shows that there is a session.
    Failure AskService(const std::wstring& user) {
        ServiceReply reply;
        if (Failure failure = Send(PageRequest(m_url, AcceptTypeDefault), reply)) {
            return failure;
        }
        if (IsRedirect(reply.head.status)) {
            m_portalUrl = Resolve(m_url, reply.head.location);
            SetClientMode(m_portalUrl);
            return Check(L"The service sends the sign-in to", m_url, m_portalUrl);
        }
        CIdentityResponse identity;
        if (AskIdentity(m_at, identity)) {
            return Unexpected(L"The service answered without asking who you are.", reply);
        }
        const std::wstring name = identity.GetUsername();
        m_isSignedIn = BaseHlpr::ToLower(name.c_str()) == BaseHlpr::ToLower(user.c_str());
        return m_isSignedIn ? Failure()
                            : Refused(FailureKind::SignedInAsOther,
                                      L"\"" + name + L"\" is signed in already. Sign out first.");
    }

    /// The portal answers the credentials with a form for the service.
    Failure TellPortal(const std::wstring& user, const std::wstring& password) {
        ServiceReply reply;
        if (Failure failure =
                SendAndFollow(m_portalUrl, AcceptTypeXml,
                              CredentialForm(user.c_str(), password.c_str()), reply)) {
            return failure;
        }
        if (!IsSuccess(reply.head.status)) {
            return Unexpected(L"The portal's answer cannot be used.", reply);
        }
        const std::string text = Utf8::Repaired({reply.body.data(), reply.body.size()});
        const PortalPage page(text.c_str());
        m_action = page.FormAction();
        m_form = page.HiddenFormData();
        if (m_action.empty() || m_form.empty()) {
            Failure failure = Refused(FailureKind::SignInRefused,
                                      L"The portal has refused the user name or the password.");
            if (!page.FailureMessage(failure.serverMessage)) {
                failure.text = L"The portal's answer cannot be used.";
            }
            return failure;
        }
        if (Failure failure =
                Check(L"The form of the sign-in page goes to", m_portalUrl, m_action)) {
            return failure;
        }
        const std::optional<Origin> target = ParseOrigin(Utf8::ToNarrow(m_action));
        return target == m_service
                   ? Failure()
                   : Refused(FailureKind::NotTheService,
                             L"The form of the sign-in page goes to \"" + WithoutQuery(m_action) +
                                 L"\", which is not the service.");
    }

    /// The service answers the portal's form with its cookies.
    Failure PostToken() {
        m_hasPostedToken = true;
        ServiceReply reply;
        if (Failure failure = SendAndFollow(m_action, AcceptTypeDefault, m_form, reply)) {
            return failure;
        }
        CIdentityResponse identity;
        if (!HoldSession(SessionCookies(m_at.service))) {
            return Unexpected(L"The service has set no session.", reply);
        }
        return AskIdentity(m_at, identity);
    }

    Failure Send(const PageRequest& request, ServiceReply& reply) {
        reply = m_at.service.Call(request, m_at.stop, m_at.timeouts);
        return reply.failure == ExchangeFailure::None ? Failure() : NoReply(reply.failure);
    }

    /// Posts a form, and goes on to where the reply leads. The form itself is posted once.
    Failure SendAndFollow(std::wstring url, AcceptType accept, const std::wstring& form,
                          ServiceReply& reply) {
        constexpr int kMostRedirects = 10;
        if (Failure failure = Send(PageRequest(url, accept, form), reply)) {
            return failure;
        }
        for (int i = 0; i < kMostRedirects && IsRedirect(reply.head.status); ++i) {
            constexpr unsigned long kTemporaryWithBody = 307;
            constexpr unsigned long kPermanentWithBody = 308;
            if (reply.head.status == kTemporaryWithBody ||
                reply.head.status == kPermanentWithBody) {
                break;
            }
            const std::wstring next = Resolve(url, reply.head.location);
            if (Failure failure = Check(L"The sign-in is sent on to", url, next)) {
                return failure;
            }
            url = next;
            if (Failure failure = Send(PageRequest(url, accept), reply)) {
                return failure;
            }
        }
        return IsRedirect(reply.head.status)
                   ? Unexpected(L"The sign-in is sent from one address to the next.", reply)
                   : Failure();
    }

    static std::wstring Resolve(const std::wstring& base, const std::wstring& reference) {
        const std::size_t scheme = reference.find(L"://");
        if (scheme != std::wstring::npos && scheme < reference.find_first_of(L"/?#")) {
            return reference;
        }
        const std::size_t authority = base.find(L"://") + 3;
        std::wstring path = WithoutQuery(base);
        if (path.find(L'/', authority) == std::wstring::npos) {
            path += L'/';
        }
        const std::size_t keep =
            reference.starts_with(L'/') ? path.find(L'/', authority) : path.rfind(L'/') + 1;
        return path.substr(0, keep) + reference;
    }

    /// Whether what is asked there, or goes there, may.
    Failure Check(const wchar_t* subject, const std::wstring& from, const std::wstring& to) const {
        const std::optional<Origin> origin = ParseOrigin(Utf8::ToNarrow(to));
        const wchar_t* fault = nullptr;
        if (!origin) {
            fault = L"which is no http or https address.";
        } else if (LeavesTls(from, to) || (!m_insecureHttp && !IsConfidential(*origin))) {
            fault = L"where everything would travel unencrypted over the network.";
        }
        return fault ? Refused(FailureKind::NotTheService,
                               std::wstring(subject) + L" \"" + WithoutQuery(to) + L"\", " + fault)
                     : Failure();
    }

    static Failure Unexpected(std::wstring text, const ServiceReply& reply) {
        Failure failure = Refused(FailureKind::NotTheService, std::move(text));
        failure.status = reply.head.status;
        failure.kind = KindOf(ErrorCode::ReplyNotXml, failure.status, ExchangeFailure::None);
        return failure;
    }

    const CallContext& m_at;
    const bool m_insecureHttp;
    const std::wstring m_url;
    const Origin m_service;
    bool m_isSignedIn = false;
    bool m_hasPostedToken = false;
    std::wstring m_portalUrl;
    std::wstring m_action;
    std::wstring m_form;
};

} // namespace

Failure SignIn(const CallContext& at, const std::wstring& user, const std::wstring& password,
               bool insecureHttp) {
    // One that was given up may still be inside the platform, and set cookies when it returns.
    const std::unique_lock lock(OneAtATime(), at.timeouts.receive);
    if (!lock) {
        return Refused(FailureKind::TimedOut, L"Another sign-in has not ended in time.");
    }
    const unsigned before = Changes();
    SignInSteps steps(at, insecureHttp);
    Failure failure = steps.Run(user, password);
    // Before the token is posted no session is this sign-in's own.
    if (steps.HasPostedToken() && (failure || !at.commit()) && Changes() == before) {
        RemoveCookies(at.service);
    }
    return failure;
}

std::wstring SessionCookies(const Service& service) {
    return CInternetCache().GetCookie((service.Url() + L"/").c_str());
}

void RestoreSession(const Service& service, const std::wstring& cookies) {
    ForgetSession(service);
    CInternetCache().SetCookie((service.Url() + L"/").c_str(), cookies.c_str());
}

void ForgetSession(const Service& service) {
    ++Changes();
    RemoveCookies(service);
}

} // namespace calls

#include "cli/service/Service.h"

#include "brevint/IIdentityProxy.h"
#include "brevint/IRepositoryProxy.h"
#include "brevint/ISignOutProxy.h"
#include "brevint/ITemplateProxy.h"
#include "brevint/InternetCache.h"
#include "cli/session/ServiceUrl.h"
#include "support/Utf8.h"

#include <new>

namespace brevint::cli {

Service::Service(const Session& session, std::chrono::seconds timeout)
    : m_url(Utf8::ToWide(session.url)), m_timeout(timeout) {
    if (!session.cookies.empty()) {
        CInternetCache().SetCookie(m_url.c_str(), Utf8::ToWide(session.cookies).c_str());
    }
}

template <class Interface>
std::unique_ptr<Interface> Service::Make(const GUID& iid) {
    void* object = nullptr;
    if (m_factory.Create(iid, &object) == 0) {
        throw std::bad_alloc();
    }
    return std::unique_ptr<Interface>(static_cast<Interface*>(object));
}

std::unique_ptr<IIdentityProxy> Service::Identity() {
    return Make<IIdentityProxy>(IID_IIdentityProxy);
}

std::unique_ptr<IRepositoryProxy> Service::Repository() {
    return Make<IRepositoryProxy>(IID_IRepositoryProxy);
}

std::unique_ptr<ISignOutProxy> Service::SignOut() {
    return Make<ISignOutProxy>(IID_ISignOutProxy);
}

std::unique_ptr<ITemplateProxy> Service::Templates() {
    return Make<ITemplateProxy>(IID_ITemplateProxy);
}

void ForgetCookies(const std::string& url) {
    // Sign-in sets its cookies for the whole host, and the jar deletes for the folder that it is
    // told.
    CInternetCache jar;
    for (const std::string& folder : FoldersOf(url)) {
        const std::wstring address = Utf8::ToWide(folder);
        if (!jar.GetCookie(address.c_str()).empty()) {
            jar.DeleteCookie(address.c_str());
        }
    }
}

} // namespace brevint::cli

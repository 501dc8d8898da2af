// The way into the service: the dashboard sends whoever has no session to the identity portal; the
// portal takes the credentials and answers with a form that carries a token to the federation
// endpoint; that endpoint opens the session and sends back to the dashboard.

#include "base/Hex.h"
#include "service/FormFields.h"
#include "service/Resources.h"
#include "service/ServiceError.h"
#include "service/Text.h"

namespace brevint::service {

namespace {

constexpr char kSignInRequest[] = "sign-in";
constexpr char kPortalPath[] = "portal/login";
constexpr char kFederationPath[] = "federation";

std::string Page(const std::string& title, const std::string& content) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>" +
           HtmlEscape(title) + "</title>\n</head>\n<body>\n<h1>" + HtmlEscape(title) + "</h1>\n" +
           content + "</body>\n</html>\n";
}

std::string Hidden(const std::string& name, const std::string& value) {
    return R"(<input type="hidden" name=")" + name + R"(" value=")" + HtmlEscape(value) + "\">\n";
}

// `failure` is shown above the form. Without an action the form posts to the address that the
// page came from, which carries the sign-in's parameters. Nothing in it is hidden: hidden fields
// are how clients tell the page of a successful sign-in.
std::string CredentialPage(const std::string& failure) {
    std::string content;
    if (!failure.empty()) {
        content +=
            "<p role=\"alert\"><failureMessage>" + HtmlEscape(failure) + "</failureMessage></p>\n";
    }
    content += "<form method=\"post\">\n"
               "<p><label>User name <input type=\"text\" name=\"userName\" autofocus></label></p>\n"
               "<p><label>Password <input type=\"password\" name=\"password\"></label></p>\n"
               "<p><button type=\"submit\">Sign in</button></p>\n"
               "</form>\n";
    return Page("Sign in", content);
}

std::string TokenPage(const std::string& federationUrl, const std::string& token,
                      const std::string& context) {
    return Page("Signing in",
                R"(<form method="post" action=")" + HtmlEscape(federationUrl) + "\">\n" +
                    Hidden("request", kSignInRequest) + Hidden("token", token) +
                    Hidden("context", context) +
                    "<noscript><p><button type=\"submit\">Continue</button></p></noscript>\n"
                    "</form>\n"
                    "<script>document.forms[0].submit();</script>\n");
}

HttpReply ShowDashboard(const Call& call) {
    if (!call.user) {
        const std::string context = "rm=0&id=dashboard&ru=" + call.serviceUrl;
        return RedirectReply(call.serviceUrl + kPortalPath + "?request=" + kSignInRequest +
                             "&mode=DB&context=" + base::PercentEncode(context));
    }
    return HtmlReply(200, Page("Dashboard", "<p>Signed in as " + HtmlEscape(call.user->name) +
                                                ". <a href=\"" + HtmlEscape(call.serviceUrl) +
                                                "SignOut\">Sign out</a></p>\n"));
}

// The context that the dashboard put into the portal's address.
std::string CheckPortalQuery(const Call& call) {
    const FormFields query = ReadQuery(call.request.query);
    const auto mode = query.Single("mode");
    const auto context = query.Single("context");
    if (query.Single("request") != kSignInRequest || !context || (mode != "DB" && mode != "VX")) {
        throw BadRequest("The portal's address lacks its parameters.");
    }
    return *context;
}

HttpReply TakeCredentials(const Call& call, Sessions& sessions) {
    const std::string context = CheckPortalQuery(call);
    const FormFields form = ReadForm(call.request.Header("Content-Type"), call.request.body);
    const auto name = form.Single("userName");
    const auto password = form.Single("password");
    if (!name || !password || form.Size() != 2) {
        throw BadRequest("The form must hold userName and password.");
    }
    const User* user = sessions.CheckPassword(*name, *password);
    if (!user) {
        return HtmlReply(200, CredentialPage("The user name or password is incorrect."));
    }
    return HtmlReply(200, TokenPage(call.serviceUrl + kFederationPath,
                                    sessions.IssueToken(*user, context), context));
}

HttpReply TakeToken(const Call& call, Sessions& sessions) {
    const FormFields form = ReadForm(call.request.Header("Content-Type"), call.request.body);
    const auto token = form.Single("token");
    const auto context = form.Single("context");
    if (form.Single("request") != kSignInRequest || !token || !context || form.Size() != 3) {
        throw BadRequest("The form must hold request, token and context.");
    }
    const auto cookies = sessions.Redeem(*token, *context);
    if (!cookies) {
        return HtmlReply(403, Page("Sign-in failed",
                                   "<p>The sign-in token is not valid. <a href=\"" +
                                       HtmlEscape(call.serviceUrl) + "\">Sign in again</a></p>\n"));
    }
    HttpReply reply = RedirectReply(call.serviceUrl);
    SetSessionCookies(reply, *cookies);
    return reply;
}

} // namespace

void AddSignInResources(Router& router, ServiceState& state) {
    router.Add({"GET", "", Access::Anyone}, ShowDashboard);
    router.Add({"GET", kPortalPath, Access::Anyone}, [](const Call& call) {
        CheckPortalQuery(call);
        return HtmlReply(200, CredentialPage({}));
    });
    router.Add({"POST", kPortalPath, Access::Anyone},
               [&state](const Call& call) { return TakeCredentials(call, state.sessions); });
    router.Add({"POST", kFederationPath, Access::Anyone},
               [&state](const Call& call) { return TakeToken(call, state.sessions); });
    router.Add({"GET", "SignOut", Access::SignedIn, "", "an HTML page; ends the session"},
               [&state](const Call& call) {
                   state.sessions.End(ReadSessionCookies(call.request));
                   HttpReply reply = HtmlReply(
                       200, Page("Signed out", "<p><a href=\"" + HtmlEscape(call.serviceUrl) +
                                                   "\">Sign in again</a></p>\n"));
                   ExpireSessionCookies(reply);
                   return reply;
               });
}

} // namespace brevint::service

#include "brevint/InternetCache.h"
#include "brevint/SignInProxy.h"
#include "brevint/SignInResponse.h"
#include "cli/output/Failure.h"
#include "cli/run/Context.h"
#include "cli/service/SignInRequests.h"
#include "cli/session/PrivateFile.h"
#include "cli/session/ServiceUrl.h"
#include "cli/session/Session.h"
#include "cli/terminal/SafeText.h"
#include "cli/terminal/Terminal.h"
#include "support/Utf8.h"

#include <nlohmann/json.hpp>

#include <iostream>

namespace brevint::cli {

namespace {

std::string AskPassword(const std::string& user) {
    if (Terminal::IsTerminal(Terminal::Stream::Input)) {
        const std::optional<std::string> password =
            Terminal::ReadHiddenLine("Password of " + Neutralise(user) + ": ");
        Terminal::Write(Terminal::Stream::Error, "\n");
        if (!password) {
            throw Failure(ExitCode::Interrupted, "No password was given.");
        }
        return *password;
    }
    std::string password;
    if (!std::getline(std::cin, password)) {
        throw Failure(ExitCode::Usage, "There is no password on standard input.",
                      "Give the password as its first line.");
    }
    if (password.ends_with('\r')) {
        password.pop_back();
    }
    return password;
}

/// What came of a sign-in.
struct Attempt {
    std::unique_ptr<SignInResponse> response;
    SignInRequests requests;
};

[[noreturn]] void Fail(const std::string& url, const Attempt& attempt) {
    const std::string words = Utf8::ToNarrow(attempt.response->GetErrorMessage());
    const std::string summary = "The sign-in to " + url + " failed.";
    if (!attempt.requests.Refusal().empty()) {
        throw Failure(ExitCode::Refused, summary + " " + attempt.requests.Refusal(),
                      "Nothing was sent there. Ask the service's administrator.");
    }
    if (attempt.requests.EndedWithServicePage()) {
        throw Failure(ExitCode::Refused, summary + " It answered without asking who you are.",
                      "Check that the address is the service's own.");
    }
    if (!attempt.requests.EndedWithPortalPage()) {
        throw Failure(ExitCode::NoConnection, words); // the library's own
    }
    Failure failure(ExitCode::NotAuthorised, summary, "Check the user name and the password.");
    // Where the page gives no reason, or its form would leave https, the words are the library's.
    // A portal can imitate them, so they are nobody's here.
    if (words == "Failed to find expected error" ||
        words.find("(" + url + ")") != std::string::npos) {
        failure.summary += " The portal's answer cannot be used.";
    } else {
        failure.serverWords = words;
        failure.speaker = "portal";
    }
    throw failure;
}

} // namespace

ExitCode RunSignIn(Context& context) {
    const Options& settings = context.Settings();
    if (settings.url.empty()) {
        throw Failure(ExitCode::Usage, "sign-in needs the address of the service.",
                      "Give it with --url URL.");
    }
    Session session{CheckServiceUrl(settings.url, settings.insecureHttp), settings.user, {}};
    CreatePrivateFolder(StateFolder()); // what is wrong with it shows before the sign-in
    const auto service = std::make_shared<Service>(session, context.Timeout());
    // A session that outlived an earlier run in the platform's jar would stand in the way.
    ForgetCookies(session.url);
    const auto attempt = service->Call(
        "The sign-in to " + session.url + " failed.",
        [user = Utf8::ToWide(settings.user), password = Utf8::ToWide(AskPassword(settings.user)),
         requests = SignInRequests(session.url, settings.insecureHttp)](Service& at) {
            auto made = std::make_unique<Attempt>(Attempt{nullptr, requests});
            made->response.reset(CSignInProxy(&made->requests)
                                     .SignIn(at.Url().c_str(), user.c_str(), password.c_str()));
            return made.release();
        });
    if (!attempt->response->GetSucceeded()) {
        Fail(session.url, *attempt);
    }
    // Those that requests to the service itself will carry, whatever else was set on the way.
    session.cookies = Utf8::ToNarrow(CInternetCache().GetCookie((service->Url() + L"/").c_str()));
    if (session.cookies.find("FedAuth1=") == std::string::npos) {
        throw Failure(ExitCode::Refused,
                      "The sign-in to " + session.url +
                          " succeeded, but has left no session for that address.",
                      "Check that the address is the service's own.");
    }
    SaveSession(session);
    context.Out().Line("Signed in to " + session.url + " as " + settings.user + ".");
    context.Out().Document({{"url", session.url}, {"user", settings.user}});
    return ExitCode::Success;
}

} // namespace brevint::cli

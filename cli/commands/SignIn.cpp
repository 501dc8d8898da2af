#include "brevint/ISignInProxy.h"
#include "brevint/InternetCache.h"
#include "brevint/SignInResponse.h"
#include "cli/Command.h"
#include "cli/Failure.h"
#include "cli/SafeText.h"
#include "cli/ServiceUrl.h"
#include "cli/Session.h"
#include "cli/Terminal.h"
#include "cli/Utf8.h"

#include <nlohmann/json.hpp>

#include <iostream>

namespace brevint::cli {

namespace {

std::string AskPassword(const std::string& user) {
    if (Terminal::IsTerminal(Terminal::Stream::Input)) {
        Terminal::Write(Terminal::Stream::Error, "Password of " + Neutralise(user) + ": ");
        const std::optional<std::string> password = Terminal::ReadHiddenLine();
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

/// A session that outlived an earlier run in the platform's jar would stand in the way.
void ClearCookies(const std::wstring& url) {
    CInternetCache jar;
    if (!jar.GetCookie(url.c_str()).empty()) {
        jar.DeleteCookie(url.c_str());
    }
}

[[noreturn]] void Fail(const std::string& url, const std::string& words) {
    // A sign-in gives its reason as text alone. The library's own text about the connection is told
    // from the portal's by the address in it.
    if (words.find("(" + url + ")") != std::string::npos) {
        throw Failure(ExitCode::NoConnection, words);
    }
    Failure failure(ExitCode::NotAuthorised, "The sign-in to " + url + " failed.",
                    "Check the user name and the password.");
    failure.serverWords = words;
    throw failure;
}

class SignIn : public Command {
public:
    void AddOptions(OptionList& options) override {
        options.Required("--user", user_, "NAME", "Name of the user");
    }

    ExitCode Run(Context& context) override {
        const Options& settings = context.Settings();
        if (settings.url.empty()) {
            throw Failure(ExitCode::Usage, "sign-in needs the address of the service.",
                          "Give it with --url URL.");
        }
        Session session{CheckServiceUrl(settings.url, settings.insecureHttp), user_, {}};
        const auto service = std::make_shared<Service>(session, context.Timeout());
        ClearCookies(service->Url());
        const auto response = service->Call(
            "The sign-in to " + session.url + " failed.",
            [user = ToWide(user_), password = ToWide(AskPassword(user_))](Service& at) {
                return at.SignIn()->SignIn(at.Url().c_str(), user.c_str(), password.c_str());
            });
        if (!response->GetSucceeded()) {
            Fail(session.url, ToUtf8(response->GetErrorMessage()));
        }
        session.cookies = ToUtf8(response->GetCookie());
        SaveSession(session);
        context.Out().Line("Signed in to " + session.url + " as " + user_ + ".");
        context.Out().Document({{"url", session.url}, {"user", user_}});
        return ExitCode::Success;
    }

private:
    std::string user_;
};

} // namespace

std::unique_ptr<Command> MakeSignIn() {
    return std::make_unique<SignIn>();
}

} // namespace brevint::cli

#pragma once

#include "cli/output/Failure.h"
#include "cli/output/Output.h"
#include "cli/run/Items.h"
#include "cli/run/Options.h"
#include "cli/session/Session.h"
#include "cli/terminal/Interrupt.h"

#include <brevint/client.h>

#include <memory>
#include <optional>

namespace brevint::cli {

/// What a command works with during one run.
class Context {
public:
    explicit Context(Options options);

    const Options& Settings() const { return m_options; }
    const Output& Out() const { return m_output; }

    /// The session with the service of --url, without cookies if it is not the one signed in to, or
    /// with the one signed in to. Throws a Failure when there is neither.
    const Session& TheSession();

    /// What `work` returns, which calls the service of that session within these limits. A failure
    /// of the library in it is thrown as a Failure that begins with `summary`, as in Attempt.
    template <class Function>
    auto Ask(const std::string& summary, Function work) {
        Client& client = TheClient();
        return Attempt(summary, [&] { return work(client, Limits()); });
    }

    /// Finds items at that service.
    Items& TheItems();

    /// Asks for the password of the session's user, signs in, and keeps the new session. Throws a
    /// Failure where there is nobody to ask, too.
    void SignInAgain();

    /// Ctrl-C stops this token instead of ending the program.
    StopToken Stop() const { return m_interrupt.Token(); }

    /// What calls end at: Ctrl-C, or --timeout.
    CallOptions Limits() const;

private:
    /// The service of the session. Commands reach it by Ask, which has them say what failed.
    Client& TheClient();

    const Options m_options;
    const Interrupt m_interrupt;
    const Output m_output;
    std::optional<Session> m_session;
    std::optional<Client> m_client;
    std::optional<Items> m_items;
};

/// A client for the service at that address. Throws a Failure for one that cannot be used.
Client MakeClient(const std::string& url, const ClientSettings& settings);

} // namespace brevint::cli

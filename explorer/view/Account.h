#pragma once

#include "explorer/background/Session.h"
#include "explorer/system/SessionStore.h"
#include "explorer/system/Settings.h"
#include "explorer/view/DialogStack.h"
#include "explorer/view/SignInDialog.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace brevint::explorer {

/// Signs the user in and out, and keeps the session for the next start if that is wanted.
class Account {
public:
    struct Listener {
        std::function<void()> onSignedIn;
        std::function<void()> onSignedOut; ///< Or not signed in after all.
        std::function<void()> onLeaving;   ///< Another user, or service, follows.
        /// The stored session cannot be tried.
        std::function<void(const Error&, std::function<void()> again)> onUnreachable;
    };

    Account(Session& session, DialogStack& dialogs, Settings& settings,
            std::optional<SessionStore> store, Listener listener);
    Account(const Account&) = delete;
    Account& operator=(const Account&) = delete;

    bool IsSignedIn() const { return m_isSignedIn; }
    const std::string& User() const { return m_user; }

    /// Goes on with the stored session, or asks for one.
    void Start();
    /// Shows the dialog, unless it is there. What waits for a session goes on after it.
    void AskToSignIn(std::wstring why = {});
    void SignOut();

private:
    void SignIn(const SignInDialog::Entries& entries);
    /// Whether that is the user of the session, or of the last one.
    bool IsUser(const std::string& user) const;
    /// Takes service and user for those of the session, whoever they are.
    void TurnTo(const std::string& url, const std::shared_ptr<Client>& client,
                const std::string& user);
    void OnSignedIn(bool staysSignedIn);
    void OnRefused();
    void Restore();

    Session& m_session;
    DialogStack& m_dialogs;
    Settings& m_settings;
    std::optional<SessionStore> m_store;
    const Listener m_listener;
    std::string m_user;
    SignInDialog* m_dialog = nullptr; ///< While it is open.
    std::optional<Session::CallId> m_signIn;
    bool m_isSignedIn = false;
};

} // namespace brevint::explorer

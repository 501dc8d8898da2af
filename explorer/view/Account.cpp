#include "explorer/view/Account.h"

#include "explorer/resources/Resource.h"
#include "explorer/system/Secret.h"
#include "explorer/system/Text.h"

#include <utility>

namespace brevint::explorer {

namespace {

constexpr const wchar_t* kAddress = L"Address";
constexpr const wchar_t* kUser = L"User";
constexpr const wchar_t* kStays = L"StaySignedIn";

} // namespace

Account::Account(Session& session, DialogStack& dialogs, Settings& settings,
                 std::optional<SessionStore> store, Listener listener)
    : m_session(session), m_dialogs(dialogs), m_settings(settings), m_store(std::move(store)),
      m_listener(std::move(listener)) {}

void Account::Start() {
    const std::optional<StoredSession> stored = m_store ? m_store->Load() : std::nullopt;
    if (!stored) {
        AskToSignIn();
        return;
    }
    Error error;
    const auto client = m_session.ClientFor(stored->url, false, error);
    if (client) {
        client->RestoreSession(stored->session, {.error = &error});
    }
    if (error) {
        AskToSignIn();
        return;
    }
    m_session.Open(stored->url, client);
    m_user = stored->user;
    Restore();
}

void Account::Restore() {
    m_session.Call(
        [](const Client& client, const CallOptions& options) { return client.WhoAmI(options); },
        [this](const Reply<Identity>& reply) {
            if (!reply.error) {
                m_isSignedIn = true;
                m_listener.onSignedIn();
            } else if (reply.error.failure == Failure::NotSignedIn) {
                m_listener.onSignedOut();
            } else {
                m_listener.onUnreachable(reply.error, [this] { Restore(); });
            }
        });
}

void Account::AskToSignIn(std::wstring why) {
    if (m_dialog) {
        return;
    }
    const bool isOpen = m_session.IsOpen();
    auto dialog = std::make_unique<SignInDialog>(
        SignInDialog::Entries{.url = isOpen ? m_session.Url() : Utf8(m_settings.GetText(kAddress)),
                              .user = isOpen && !m_user.empty() ? m_user
                                                                : Utf8(m_settings.GetText(kUser)),
                              .password = {},
                              .staysSignedIn = m_settings.GetNumber(kStays).value_or(0) != 0},
        std::move(why),
        SignInDialog::Listener{
            .onSignIn = [this](const SignInDialog::Entries& entries) { SignIn(entries); },
            .onStop =
                [this] {
                    if (m_signIn) {
                        m_session.Stop(*m_signIn);
                    }
                },
            .onRefused =
                [this] {
                    OnRefused();
                }});
    SignInDialog* const shown = dialog.get();
    m_dialogs.Show(std::move(dialog));
    if (m_dialogs.Top() == shown) { // the window may be gone
        m_dialog = shown;
    }
}

void Account::SignIn(const SignInDialog::Entries& entries) {
    // The session stays with its service until another one has let the user in.
    Error wrongAddress;
    const auto service = m_session.ClientFor(entries.url, IsUser(entries.user), wrongAddress);
    if (!service) {
        m_dialog->Fail(wrongAddress);
        return;
    }
    const auto password = std::make_shared<const Secret>(entries.password);
    const auto signIn = [user = entries.user, password](Client& client, const CallOptions& given) {
        // One that was stopped may hold up the next until its time is over: the usual one will do.
        const CallOptions options{.stop = given.stop};
        Error error;
        CallOptions first = options;
        first.error = &error;
        if (client.SignIn(user, password->Text(), first)) {
            return true;
        }
        if (error.failure != Failure::SignedInAsOther) {
            throw Exception(error);
        }
        client.SignOut(options);
        return client.SignIn(user, password->Text(), options);
    };
    const auto done = [this, service, url = entries.url, user = entries.user,
                       stays = entries.staysSignedIn](const Reply<bool>& reply) {
        m_signIn.reset();
        if (reply.error) {
            m_dialog->Fail(reply.error);
            return;
        }
        std::exchange(m_dialog, nullptr)->Succeed();
        TurnTo(url, service, user);
        OnSignedIn(stays);
    };
    m_signIn = m_session.CallIn(service, signIn, done);
}

bool Account::IsUser(const std::string& user) const {
    return FoldCase(Wide(user)) == FoldCase(Wide(m_user));
}

void Account::TurnTo(const std::string& url, const std::shared_ptr<Client>& client,
                     const std::string& user) {
    // What is asked, waits or is under way was wanted of that service, and by that user.
    if (!m_session.IsAt(url) || !IsUser(user)) {
        m_dialogs.CloseAll();
        m_session.GiveUp();
        m_listener.onLeaving();
    }
    m_session.Open(url, client);
    m_user = user;
}

void Account::OnSignedIn(bool staysSignedIn) {
    m_settings.SetText(kAddress, Wide(m_session.Url()));
    m_settings.SetText(kUser, Wide(m_user));
    m_settings.SetNumber(kStays, staysSignedIn ? 1 : 0);
    if (m_store) {
        m_store->Forget();
    }
    if (staysSignedIn) {
        Error error;
        const Secret saved(m_session.GetClient()->SaveSession({.error = &error}));
        if (error || !m_store || !m_store->Save({m_session.Url(), m_user, saved.Text()})) {
            m_dialogs.ShowMessage({.icon = IDI_WARNING,
                                   .title = Text(IDS_TITLE),
                                   .text = Text(IDS_SESSION_NOT_KEPT),
                                   .choices = {{Text(IDS_OK)}}});
        }
    }
    m_isSignedIn = true;
    m_listener.onSignedIn();
    m_session.ResumeCalls();
}

void Account::OnRefused() {
    m_dialog = nullptr;
    m_isSignedIn = false;
    m_session.FailCalls();
    m_listener.onSignedOut();
}

void Account::SignOut() {
    if (m_store) {
        m_store->Forget();
    }
    m_session.Call(
        [](Client& client, const CallOptions& options) {
            try {
                return client.SignOut(options);
            } catch (const Exception& failed) {
                if (failed.GetError().failure != Failure::NotSignedIn) {
                    throw;
                }
                return true; // what was wanted
            }
        },
        [this](const Reply<bool>& reply) {
            // What is open belongs to the session.
            m_dialog = nullptr;
            m_signIn.reset();
            m_dialogs.CloseAll();
            m_session.Close();
            m_isSignedIn = false;
            m_listener.onSignedOut();
            if (reply.error) {
                m_dialogs.ShowError(reply.error);
            }
        });
}

} // namespace brevint::explorer

#pragma once

#include "brevint/client.h"
#include "explorer/view/Dialog.h"

#include <functional>
#include <string>

namespace brevint::explorer {

/// Asks for address, user and password. It stays until the sign-in has succeeded or the user does
/// without, and tells what went wrong where the user can put it right.
class SignInDialog : public Dialog {
public:
    struct Entries {
        std::string url;
        std::string user;
        std::string password;
        bool staysSignedIn = false;
    };
    struct Listener {
        /// Begins a sign-in, of which Succeed or Fail is to tell.
        std::function<void(const Entries&)> onSignIn;
        /// Ends the sign-in that is under way.
        std::function<void()> onStop;
        /// The user does without.
        std::function<void()> onRefused;
    };

    /// `why` is the reason why a sign-in is needed; it may be empty.
    SignInDialog(Entries entries, std::wstring why, Listener listener);

    void Succeed() { Close(); }
    void Fail(const Error& error);

    void Refuse() override;

private:
    void OnOpen() override;
    void OnCommand(UINT id, UINT notification) override;

    void SignIn();
    void SetBusy(bool isBusy);

    const Entries m_entries;
    const std::wstring m_why;
    const Listener m_listener;
    std::wstring m_details; ///< Of the last failure.
    bool m_isBusy = false;
};

/// The address as the library takes it: "https://" is what a user leaves out.
std::string CompleteUrl(std::string text);

} // namespace brevint::explorer

#pragma once

#include "service/SessionCookies.h"
#include "service/User.h"

#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace brevint::service {

/// Who may sign in, the tokens under way between portal and federation endpoint, and the sessions.
/// Thread-safe; the users that it hands out are those of kUsers.
class Sessions {
public:
    /// Null when the name is unknown or the password wrong.
    const User* CheckPassword(std::string_view name, std::string_view password) const;

    /// An XML token that can be redeemed once, together with the same `context`.
    std::string IssueToken(const User& user, const std::string& context);

    /// Opens a session; nothing when the token was never issued, has been used or has expired, or
    /// was issued for another context.
    std::optional<SessionCookies> Redeem(const std::string& token, const std::string& context);

    /// Null when the cookies belong to no session or to one that has expired.
    const User* Find(const SessionCookies& cookies) const;

    void End(const SessionCookies& cookies);

private:
    using Clock = std::chrono::steady_clock;

    struct Token {
        const User* user = nullptr;
        std::string context;
        Clock::time_point expiry;
    };
    struct Session {
        const User* user = nullptr;
        Clock::time_point expiry;
    };

    mutable std::mutex m_mutex;
    std::map<std::string, Token> m_tokens; ///< By the token's whole text.
    std::map<SessionCookies, Session> m_sessions;
};

} // namespace brevint::service

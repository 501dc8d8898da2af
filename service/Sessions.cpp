#include "service/Sessions.h"

#include "service/Text.h"
#include "service/XmlWriter.h"

#include <utility>

namespace brevint::service {

namespace {

constexpr std::chrono::minutes kTokenLifetime(5);
constexpr std::chrono::hours kSessionLifetime(8);

} // namespace

const User* Sessions::CheckPassword(std::string_view name, std::string_view password) const {
    for (const User& user : kUsers) {
        if (user.name == name) {
            return user.password == password ? &user : nullptr;
        }
    }
    return nullptr;
}

std::string Sessions::IssueToken(const User& user, const std::string& context) {
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    XmlWriter xml;
    xml.Open("SignInToken")
        .Element("Subject", user.name)
        .Element("Expires", FormatUtc(now + kTokenLifetime))
        .Element("Value", RandomToken())
        .Close();
    std::string token = xml.Document();

    const std::lock_guard lock(m_mutex);
    std::erase_if(m_tokens, [](const auto& entry) { return entry.second.expiry <= Clock::now(); });
    m_tokens[token] = {&user, context, Clock::now() + kTokenLifetime};
    return token;
}

std::optional<SessionCookies> Sessions::Redeem(const std::string& token,
                                               const std::string& context) {
    const std::lock_guard lock(m_mutex);
    const auto node = m_tokens.extract(token);
    if (!node || node.mapped().expiry <= Clock::now() || node.mapped().context != context) {
        return std::nullopt;
    }
    SessionCookies cookies{RandomToken(), RandomToken()};
    std::erase_if(m_sessions,
                  [](const auto& entry) { return entry.second.expiry <= Clock::now(); });
    m_sessions[cookies] = {node.mapped().user, Clock::now() + kSessionLifetime};
    return cookies;
}

const User* Sessions::Find(const SessionCookies& cookies) const {
    const std::lock_guard lock(m_mutex);
    const auto entry = m_sessions.find(cookies);
    return entry != m_sessions.end() && entry->second.expiry > Clock::now() ? entry->second.user
                                                                            : nullptr;
}

void Sessions::End(const SessionCookies& cookies) {
    const std::lock_guard lock(m_mutex);
    m_sessions.erase(cookies);
}

} // namespace brevint::service

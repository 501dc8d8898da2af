#include "service/Sessions.h"

#include "service/Text.h"
#include "service/XmlWriter.h"

#include <utility>

namespace brevint::service {

Sessions::Sessions(std::vector<User> users, Seconds tokenLifetime, Seconds sessionLifetime)
    : users_(std::move(users)), tokenLifetime_(tokenLifetime), sessionLifetime_(sessionLifetime) {}

const User* Sessions::CheckPassword(std::string_view name, std::string_view password) const {
    for (const User& user : users_)
        if (user.name == name)
            return user.password == password ? &user : nullptr;
    return nullptr;
}

std::string Sessions::IssueToken(const User& user, const std::string& context) {
    const auto expires = std::chrono::system_clock::now() + tokenLifetime_;
    XmlWriter xml;
    xml.Open("SignInToken")
        .Element("Subject", user.name)
        .Element("Expires", FormatUtc(expires))
        .Element("Value", RandomToken())
        .Close();
    std::string token = xml.Document();

    const std::lock_guard lock(mutex_);
    std::erase_if(tokens_, [](const auto& entry) { return entry.second.expiry <= Clock::now(); });
    tokens_[token] = {&user, context, Clock::now() + tokenLifetime_};
    return token;
}

std::optional<SessionCookies> Sessions::Redeem(const std::string& token,
                                               const std::string& context) {
    const std::lock_guard lock(mutex_);
    const auto node = tokens_.extract(token);
    if (!node || node.mapped().expiry <= Clock::now() || node.mapped().context != context)
        return std::nullopt;
    const SessionCookies cookies{RandomToken(), RandomToken()};
    std::erase_if(sessions_, [](const auto& entry) { return entry.second.expiry <= Clock::now(); });
    sessions_[cookies] = {node.mapped().user, Clock::now() + sessionLifetime_};
    return cookies;
}

const User* Sessions::Find(const SessionCookies& cookies) const {
    const std::lock_guard lock(mutex_);
    const auto entry = sessions_.find(cookies);
    return entry != sessions_.end() && entry->second.expiry > Clock::now() ? entry->second.user
                                                                           : nullptr;
}

void Sessions::End(const SessionCookies& cookies) {
    const std::lock_guard lock(mutex_);
    sessions_.erase(cookies);
}

} // namespace brevint::service

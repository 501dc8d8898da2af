#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace brevint::cli {

/// Where the user has signed in, and the cookies that prove it: a credential.
struct Session {
    std::string url;
    std::string user;
    std::string cookies; ///< As Client::SaveSession tells them; empty: not signed in.
    std::map<std::string, std::string> roots; ///< Identifiers of the folders that hold all others.
};

/// The session that a sign-in has left; nothing when there is none. Throws a Failure when its file
/// is damaged or open to others.
std::optional<Session> LoadSession();

/// Keeps the session for later runs, in place of an earlier one. The file that is in the making is
/// gone when this throws; an Interrupt should be at work meanwhile.
void SaveSession(const Session& session);

/// Forgets the session kept, whatever state its file is in.
void ForgetSession();

// The form of the session's file. ParseSession gives nothing for what FormatSession cannot have
// made.
std::string FormatSession(const Session& session);
std::optional<Session> ParseSession(std::string_view text);

} // namespace brevint::cli

#pragma once

#include <string>
#include <vector>

namespace brevint::service {

enum class Role { Administrator, User };

struct User {
    std::string id; ///< A GUID.
    std::string name;
    std::string password;
    Role role = Role::User;
};

/// An administrator, who owns the initial content, a plain user, and a user whose name and password
/// need every kind of escaping. The passwords are no secret: the service is for loopback only.
inline const std::vector<User> kUsers = {
    {"00000000-0000-0000-0000-00000000000a", "ada", "ada-secret", Role::Administrator},
    {"00000000-0000-0000-0000-00000000000b", "ben", "ben-secret", Role::User},
    {"00000000-0000-0000-0000-00000000000c", "Zoë & Søn", "p&ss=w+rd 100% ü", Role::User}};

} // namespace brevint::service

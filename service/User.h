#pragma once

#include <string>

namespace brevint::service {

enum class Role { Administrator, User };

struct User {
    std::string id; ///< A GUID.
    std::string name;
    std::string password;
    Role role = Role::User;
};

} // namespace brevint::service

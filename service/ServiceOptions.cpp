#include "service/ServiceOptions.h"

namespace brevint::service {

std::vector<User> DefaultUsers() {
    return {{"00000000-0000-0000-0000-00000000000a", "ada", "ada-secret", Role::Administrator},
            {"00000000-0000-0000-0000-00000000000b", "ben", "ben-secret", Role::User},
            {"00000000-0000-0000-0000-00000000000c", "Zoë & Søn", "p&ss=w+rd 100% ü", Role::User}};
}

} // namespace brevint::service

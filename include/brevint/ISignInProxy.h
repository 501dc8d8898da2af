#pragma once

#include "brevint/Export.h"

class SignInResponse;

/// Signs a user in.
class BREVINT_INTERFACE ISignInProxy {
public:
    virtual ~ISignInProxy() = default;

    /// Signs in to the service at `url` through its identity portal. Blocks for three exchanges.
    /// Afterwards the process's cookie jar holds the session, and the record returned its cookies.
    /// What begins under TLS fails where it would have to go on without.
    /// Returns a new record that the caller deletes; never null. One thread at a time.
    virtual SignInResponse* SignIn(const wchar_t* url, const wchar_t* userName,
                                   const wchar_t* password) = 0;
};

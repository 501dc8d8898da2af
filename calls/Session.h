#pragma once

#include "calls/BoundedCall.h"

#include <string>

namespace calls {

/// Signs in. Where it fails or is given up no session is left.
Failure SignIn(const CallContext& at, const std::wstring& user, const std::wstring& password,
               bool insecureHttp);

/// The cookies that requests to the service carry, "name=value; name=value"; empty without a
/// session.
std::wstring SessionCookies(const Service& service);

/// Puts such cookies into the process's jar.
void RestoreSession(const Service& service, const std::wstring& cookies);

/// Takes every cookie out of the jar that requests to the service could carry, whichever folder of
/// its host it was set for.
void ForgetSession(const Service& service);

} // namespace calls

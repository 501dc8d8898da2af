#pragma once

#include <string>

namespace brevint::test {

/// What the user reads when the service at `url` cannot be reached.
inline std::wstring ConnectionFailure(const std::wstring& url) {
    return L"Skelvor Tools cannot connect with the Dashboard. Please verify that your internet "
           L"connection is working. If it is, then verify with your system administrator that "
           L"Skelvor Tools is using the correct URL (" +
           url + L").";
}

} // namespace brevint::test

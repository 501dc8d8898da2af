#pragma once

#include <filesystem>

namespace brevint::test {

/// Makes this process trust a certificate, as long as it lives. It must be there before the process
/// first meets any certificate: what Wine trusts then, it trusts until the process ends.
class Trust {
public:
    /// A file in PEM form.
    explicit Trust(const std::filesystem::path& certificate);
    ~Trust();
    Trust(const Trust&) = delete;
    Trust& operator=(const Trust&) = delete;

private:
    const std::filesystem::path m_certificate;
};

namespace target {

/// Who is not trusted any more is not reached any more.
extern const bool kTrustEndsAtOnce;
/// A redirect out of TLS is followed. Windows is documented not to; Wine does.
extern const bool kRedirectsLeaveTls;

} // namespace target

} // namespace brevint::test

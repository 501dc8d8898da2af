#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace brevint::test {

/// Puts TLS in front of a ScriptedServer: takes connections on a port of its own, under a
/// certificate that it signs itself, and passes the bytes on to the server's port and back.
class TlsFront {
public:
    enum class Certificate {
        good,     ///< for "localhost", valid today
        expired,  ///< for "localhost", valid until yesterday
        misnamed, ///< for "elsewhere.test"
    };

    explicit TlsFront(std::uint16_t serverPort, Certificate certificate = Certificate::good);
    ~TlsFront();

    /// The address of `target` behind the front.
    std::wstring Url(std::string_view target) const;
    /// The certificate in PEM form: who trusts it trusts the front.
    const std::string& CertificateText() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace brevint::test

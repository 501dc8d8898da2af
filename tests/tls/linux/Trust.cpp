#include "tests/tls/Trust.h"

#include "tests/support/Environment.h"

namespace brevint::test {

Trust::Trust(const std::filesystem::path& certificate) : m_certificate(certificate) {
    SetVariable("SSL_CERT_FILE", m_certificate.string());
}

Trust::~Trust() {
    ClearVariable("SSL_CERT_FILE");
}

const bool target::kTrustEndsAtOnce = true;
const bool target::kRedirectsLeaveTls = false;

} // namespace brevint::test

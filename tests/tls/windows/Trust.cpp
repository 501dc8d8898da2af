#include "tests/tls/Trust.h"

#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <windows.h>

#include <wincrypt.h>

namespace brevint::test {
namespace {

struct StoreCloser {
    // Writes the changes too, unless a certificate of the store is still in use.
    void operator()(HCERTSTORE store) const noexcept { CertCloseStore(store, 0); }
};

auto OpenStore() {
    return std::unique_ptr<void, StoreCloser>(CertOpenSystemStoreW(0, L"Root"));
}

std::vector<BYTE> Read(const std::filesystem::path& certificate) {
    std::ifstream file(certificate);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    auto size = static_cast<DWORD>(text.size());
    std::vector<BYTE> bytes(size);
    CryptStringToBinaryA(text.c_str(), 0, CRYPT_STRING_BASE64HEADER, bytes.data(), &size, nullptr,
                         nullptr);
    bytes.resize(size);
    return bytes;
}

} // namespace

Trust::Trust(const std::filesystem::path& certificate) : m_certificate(certificate) {
    const auto bytes = Read(m_certificate);
    CertAddEncodedCertificateToStore(OpenStore().get(), X509_ASN_ENCODING, bytes.data(),
                                     static_cast<DWORD>(bytes.size()),
                                     CERT_STORE_ADD_REPLACE_EXISTING, nullptr);
}

Trust::~Trust() {
    const auto bytes = Read(m_certificate);
    const std::unique_ptr<const CERT_CONTEXT, decltype(&CertFreeCertificateContext)> ours(
        CertCreateCertificateContext(X509_ASN_ENCODING, bytes.data(),
                                     static_cast<DWORD>(bytes.size())),
        CertFreeCertificateContext);
    const auto store = OpenStore();
    CertDeleteCertificateFromStore(CertFindCertificateInStore(
        store.get(), X509_ASN_ENCODING, 0, CERT_FIND_EXISTING, ours.get(), nullptr));
}

const bool target::kTrustEndsAtOnce = false;
const bool target::kRedirectsLeaveTls = true;

} // namespace brevint::test

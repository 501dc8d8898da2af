#include "tests/support/linux/TlsFront.h"

#include <utility>

#include <boost/asio.hpp>
#include <boost/asio/ssl.hpp>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <array>
#include <stdexcept>
#include <thread>

namespace brevint::test {

namespace asio = boost::asio;
namespace ssl = boost::asio::ssl;
using asio::use_awaitable;
using tcp = asio::ip::tcp;

namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using X509Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

constexpr long kDay = 24 * 60 * 60;

X509Certificate MakeCertificate(EVP_PKEY* key, TlsFront::Certificate kind) {
    const std::string host =
        kind == TlsFront::Certificate::misnamed ? "elsewhere.test" : "localhost";
    const auto until = kind == TlsFront::Certificate::expired ? -kDay : kDay;
    X509Certificate certificate(X509_new(), X509_free);
    X509_set_version(certificate.get(), X509_VERSION_3);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -2 * kDay);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), until);
    X509_set_pubkey(certificate.get(), key);
    auto* const name = X509_get_subject_name(certificate.get());
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>(host.c_str()), -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    for (const auto& [id, value] : {std::pair(NID_basic_constraints, std::string("CA:TRUE")),
                                    std::pair(NID_subject_alt_name, "DNS:" + host)}) {
        const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
            X509V3_EXT_conf_nid(nullptr, nullptr, id, value.c_str()), X509_EXTENSION_free);
        X509_add_ext(certificate.get(), extension.get(), -1);
    }
    if (X509_sign(certificate.get(), key, EVP_sha256()) == 0) {
        throw std::runtime_error("cannot make a certificate");
    }
    return certificate;
}

std::string PemText(X509* certificate) {
    const std::unique_ptr<BIO, decltype(&BIO_free_all)> memory(BIO_new(BIO_s_mem()), BIO_free_all);
    PEM_write_bio_X509(memory.get(), certificate);
    char* data = nullptr;
    const auto size = BIO_get_mem_data(memory.get(), &data);
    return std::string(data, static_cast<std::size_t>(size));
}

/// One connection and its counterpart to the server.
struct Passage {
    ssl::stream<tcp::socket> client;
    tcp::socket server;
};

/// Passes bytes on until one side ends, and then ends both.
template <class From, class To>
asio::awaitable<void> Pass(std::shared_ptr<Passage> passage, From& from, To& to) {
    std::array<char, 16 * 1024> bytes;
    try {
        for (;;) {
            const auto size = co_await from.async_read_some(asio::buffer(bytes), use_awaitable);
            co_await asio::async_write(to, asio::buffer(bytes, size), use_awaitable);
        }
    } catch (const boost::system::system_error&) {
        boost::system::error_code ignored;
        passage->client.lowest_layer().close(ignored);
        passage->server.close(ignored);
    }
}

} // namespace

/// The connections live in the frames of their coroutines, which go with the context.
class TlsFront::Impl {
public:
    Impl(std::uint16_t serverPort, Certificate kind)
        : m_server(asio::ip::address_v4::loopback(), serverPort) {
        const Key key(EVP_EC_gen("P-256"), EVP_PKEY_free);
        const auto certificate = MakeCertificate(key.get(), kind);
        m_certificateText = PemText(certificate.get());
        SSL_CTX_use_certificate(m_context.native_handle(), certificate.get());
        SSL_CTX_use_PrivateKey(m_context.native_handle(), key.get());
        asio::co_spawn(m_io, Accept(), asio::detached);
        m_thread = std::thread([this] { m_io.run(); });
    }

    ~Impl() {
        m_io.stop();
        m_thread.join();
    }

    std::uint16_t Port() const { return m_acceptor.local_endpoint().port(); }
    const std::string& CertificateText() const { return m_certificateText; }

private:
    asio::awaitable<void> Accept() {
        for (;;) {
            auto socket = co_await m_acceptor.async_accept(use_awaitable);
            asio::co_spawn(m_io, Carry(std::move(socket)), asio::detached);
        }
    }

    asio::awaitable<void> Carry(tcp::socket socket) {
        const auto passage =
            std::make_shared<Passage>(Passage{{std::move(socket), m_context}, tcp::socket(m_io)});
        auto& [client, server] = *passage;
        co_await client.async_handshake(ssl::stream_base::server, use_awaitable);
        co_await server.async_connect(m_server, use_awaitable);
        asio::co_spawn(m_io, Pass(passage, client, server), asio::detached);
        co_await Pass(passage, server, client);
    }

    const tcp::endpoint m_server;
    std::string m_certificateText;
    ssl::context m_context{ssl::context::tls_server};
    asio::io_context m_io;
    tcp::acceptor m_acceptor{m_io, tcp::endpoint(asio::ip::address_v4::loopback(), 0)};
    std::thread m_thread;
};

TlsFront::TlsFront(std::uint16_t serverPort, Certificate certificate)
    : m_impl(std::make_unique<Impl>(serverPort, certificate)) {}

TlsFront::~TlsFront() = default;

std::wstring TlsFront::Url(std::string_view target) const {
    return L"https://localhost:" + std::to_wstring(m_impl->Port()) +
           std::wstring(target.begin(), target.end());
}

const std::string& TlsFront::CertificateText() const {
    return m_impl->CertificateText();
}

} // namespace brevint::test

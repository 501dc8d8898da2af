#include "platform/linux/http/CurlError.h"

#include <cerrno>

namespace platform {

namespace {

DWORD VerificationError(CURL* easy) noexcept {
    // OpenSSL's X509_V_ERR codes. libcurl leaves it unspecified when the chain is good but the
    // name is not the server's.
    constexpr long kOk = 0;
    constexpr long kUnspecified = 1;
    constexpr long kNotYetValid = 9;
    constexpr long kExpired = 10;
    long result = kOk;
    curl_easy_getinfo(easy, CURLINFO_SSL_VERIFYRESULT, &result);
    switch (result) {
    case kOk:
    case kUnspecified: return ERROR_INTERNET_SEC_CERT_CN_INVALID;
    case kNotYetValid:
    case kExpired: return ERROR_INTERNET_SEC_CERT_DATE_INVALID;
    default: return ERROR_INTERNET_INVALID_CA;
    }
}

DWORD ConnectionError(CURL* easy) noexcept {
    long error = 0;
    curl_easy_getinfo(easy, CURLINFO_OS_ERRNO, &error);
    return error == ECONNRESET ? ERROR_INTERNET_CONNECTION_RESET
                               : ERROR_INTERNET_CONNECTION_ABORTED;
}

} // namespace

DWORD CurlError(CURL* easy, CURLcode outcome) noexcept {
    switch (outcome) {
    case CURLE_OK: return ERROR_SUCCESS;
    case CURLE_OUT_OF_MEMORY:
    case CURLE_WRITE_ERROR: // a callback could not store what arrived
        return ERROR_NOT_ENOUGH_MEMORY;
    case CURLE_URL_MALFORMAT: // the host: nothing else of the URL is left unescaped
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY: return ERROR_INTERNET_NAME_NOT_RESOLVED;
    case CURLE_COULDNT_CONNECT: return ERROR_INTERNET_CANNOT_CONNECT;
    case CURLE_OPERATION_TIMEDOUT: return ERROR_INTERNET_TIMEOUT;
    case CURLE_PEER_FAILED_VERIFICATION: return VerificationError(easy);
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER: return ERROR_INTERNET_SECURITY_CHANNEL_ERROR;
    case CURLE_SEND_ERROR:
    case CURLE_SEND_FAIL_REWIND: // a kept connection had ended, and part of a body was gone
    case CURLE_RECV_ERROR: return ConnectionError(easy);
    case CURLE_PARTIAL_FILE: return ERROR_INTERNET_CONNECTION_ABORTED;
    case CURLE_GOT_NOTHING:
    case CURLE_UNSUPPORTED_PROTOCOL: // a reply without a status line
    case CURLE_WEIRD_SERVER_REPLY: return ERROR_HTTP_INVALID_SERVER_RESPONSE;
    default: return ERROR_INTERNET_INTERNAL_ERROR;
    }
}

} // namespace platform

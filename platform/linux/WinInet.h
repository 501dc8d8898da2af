#pragma once

// WinINet's calls, as far as the library makes them. Values and signatures are WinINet's own;
// comments stand only where this implementation leaves a choice open on Windows.

#include "platform/linux/Types.h"

using HINTERNET = LPVOID;
using INTERNET_PORT = WORD;

enum INTERNET_SCHEME : int {
    INTERNET_SCHEME_PARTIAL = -2,
    INTERNET_SCHEME_UNKNOWN = -1,
    INTERNET_SCHEME_DEFAULT = 0,
    INTERNET_SCHEME_FTP = 1,
    INTERNET_SCHEME_HTTP = 3,
    INTERNET_SCHEME_HTTPS = 4,
    INTERNET_SCHEME_FILE = 5,
};

struct URL_COMPONENTSW {
    DWORD dwStructSize;
    LPWSTR lpszScheme;
    DWORD dwSchemeLength;
    INTERNET_SCHEME nScheme;
    LPWSTR lpszHostName;
    DWORD dwHostNameLength;
    INTERNET_PORT nPort;
    LPWSTR lpszUserName;
    DWORD dwUserNameLength;
    LPWSTR lpszPassword;
    DWORD dwPasswordLength;
    LPWSTR lpszUrlPath;
    DWORD dwUrlPathLength;
    LPWSTR lpszExtraInfo;
    DWORD dwExtraInfoLength;
};
using LPURL_COMPONENTSW = URL_COMPONENTSW*;

struct INTERNET_ASYNC_RESULT {
    DWORD_PTR dwResult;
    DWORD dwError;
};
using LPINTERNET_ASYNC_RESULT = INTERNET_ASYNC_RESULT*;

struct INTERNET_BUFFERSW {
    DWORD dwStructSize;
    INTERNET_BUFFERSW* Next;
    LPCWSTR lpcszHeader;
    DWORD dwHeadersLength;
    DWORD dwHeadersTotal;
    LPVOID lpvBuffer;
    DWORD dwBufferLength;
    DWORD dwBufferTotal;
    DWORD dwOffsetLow;
    DWORD dwOffsetHigh;
};
using LPINTERNET_BUFFERSW = INTERNET_BUFFERSW*;

using INTERNET_STATUS_CALLBACK = void(CALLBACK*)(HINTERNET handle, DWORD_PTR context, DWORD status,
                                                 LPVOID information, DWORD informationLength);

inline const INTERNET_STATUS_CALLBACK INTERNET_INVALID_STATUS_CALLBACK =
    reinterpret_cast<INTERNET_STATUS_CALLBACK>(~DWORD_PTR{0});

inline constexpr DWORD INTERNET_OPEN_TYPE_PRECONFIG = 0;
inline constexpr DWORD INTERNET_OPEN_TYPE_DIRECT = 1;

inline constexpr DWORD INTERNET_SERVICE_HTTP = 3;

inline constexpr INTERNET_PORT INTERNET_INVALID_PORT_NUMBER = 0;
inline constexpr INTERNET_PORT INTERNET_DEFAULT_FTP_PORT = 21;
inline constexpr INTERNET_PORT INTERNET_DEFAULT_HTTP_PORT = 80;
inline constexpr INTERNET_PORT INTERNET_DEFAULT_HTTPS_PORT = 443;

inline constexpr DWORD INTERNET_FLAG_PRAGMA_NOCACHE = 0x00000100;
inline constexpr DWORD INTERNET_FLAG_NO_COOKIES = 0x00080000;
inline constexpr DWORD INTERNET_FLAG_NO_AUTO_REDIRECT = 0x00200000;
inline constexpr DWORD INTERNET_FLAG_KEEP_CONNECTION = 0x00400000;
inline constexpr DWORD INTERNET_FLAG_SECURE = 0x00800000;
inline constexpr DWORD INTERNET_FLAG_NO_CACHE_WRITE = 0x04000000;
inline constexpr DWORD INTERNET_FLAG_ASYNC = 0x10000000;
inline constexpr DWORD INTERNET_FLAG_RELOAD = 0x80000000;

inline constexpr DWORD INTERNET_OPTION_CONNECT_TIMEOUT = 2;
inline constexpr DWORD INTERNET_OPTION_SEND_TIMEOUT = 5;
inline constexpr DWORD INTERNET_OPTION_RECEIVE_TIMEOUT = 6;

inline constexpr DWORD INTERNET_STATUS_HANDLE_CLOSING = 70;
inline constexpr DWORD INTERNET_STATUS_REQUEST_COMPLETE = 100;

inline constexpr DWORD HTTP_QUERY_CONTENT_TYPE = 1;
inline constexpr DWORD HTTP_QUERY_CONTENT_LENGTH = 5;
inline constexpr DWORD HTTP_QUERY_LAST_MODIFIED = 11;
inline constexpr DWORD HTTP_QUERY_STATUS_CODE = 19;
inline constexpr DWORD HTTP_QUERY_LOCATION = 33;
inline constexpr DWORD HTTP_QUERY_RETRY_AFTER = 36;
inline constexpr DWORD HTTP_QUERY_CONTENT_RANGE = 53;
inline constexpr DWORD HTTP_QUERY_ETAG = 54;
inline constexpr DWORD HTTP_QUERY_FLAG_NUMBER = 0x20000000;

inline constexpr DWORD ERROR_INTERNET_TIMEOUT = 12002;
inline constexpr DWORD ERROR_INTERNET_INTERNAL_ERROR = 12004;
inline constexpr DWORD ERROR_INTERNET_INVALID_URL = 12005;
inline constexpr DWORD ERROR_INTERNET_UNRECOGNIZED_SCHEME = 12006;
inline constexpr DWORD ERROR_INTERNET_NAME_NOT_RESOLVED = 12007;
inline constexpr DWORD ERROR_INTERNET_INVALID_OPTION = 12009;
inline constexpr DWORD ERROR_INTERNET_OPERATION_CANCELLED = 12017;
inline constexpr DWORD ERROR_INTERNET_INCORRECT_HANDLE_TYPE = 12018;
inline constexpr DWORD ERROR_INTERNET_INCORRECT_HANDLE_STATE = 12019;
inline constexpr DWORD ERROR_INTERNET_CANNOT_CONNECT = 12029;
inline constexpr DWORD ERROR_INTERNET_CONNECTION_ABORTED = 12030;
inline constexpr DWORD ERROR_INTERNET_CONNECTION_RESET = 12031;
inline constexpr DWORD ERROR_INTERNET_SEC_CERT_DATE_INVALID = 12037;
inline constexpr DWORD ERROR_INTERNET_SEC_CERT_CN_INVALID = 12038;
inline constexpr DWORD ERROR_INTERNET_HTTPS_TO_HTTP_ON_REDIR = 12040;
inline constexpr DWORD ERROR_INTERNET_INVALID_CA = 12045;
inline constexpr DWORD ERROR_INTERNET_SEC_CERT_REV_FAILED = 12057;
inline constexpr DWORD ERROR_HTTP_HEADER_NOT_FOUND = 12150;
inline constexpr DWORD ERROR_HTTP_INVALID_SERVER_RESPONSE = 12152;
inline constexpr DWORD ERROR_HTTP_INVALID_HEADER = 12153;
inline constexpr DWORD ERROR_HTTP_REDIRECT_FAILED = 12156;
inline constexpr DWORD ERROR_INTERNET_SECURITY_CHANNEL_ERROR = 12157;
inline constexpr DWORD ERROR_HTTP_REDIRECT_NEEDS_CONFIRMATION = 12168;

HINTERNET InternetOpenW(LPCWSTR agent, DWORD accessType, LPCWSTR proxy, LPCWSTR proxyBypass,
                        DWORD flags) noexcept;
BOOL InternetSetOptionA(HINTERNET handle, DWORD option, LPVOID buffer, DWORD length) noexcept;
INTERNET_STATUS_CALLBACK InternetSetStatusCallback(HINTERNET handle,
                                                   INTERNET_STATUS_CALLBACK callback) noexcept;
BOOL InternetCrackUrlW(LPCWSTR url, DWORD length, DWORD flags,
                       LPURL_COMPONENTSW components) noexcept;
HINTERNET InternetConnectW(HINTERNET session, LPCWSTR server, INTERNET_PORT port, LPCWSTR user,
                           LPCWSTR password, DWORD service, DWORD flags,
                           DWORD_PTR context) noexcept;
HINTERNET HttpOpenRequestW(HINTERNET connection, LPCWSTR verb, LPCWSTR objectName, LPCWSTR version,
                           LPCWSTR referrer, LPCWSTR* acceptTypes, DWORD flags,
                           DWORD_PTR context) noexcept;

/// On an asynchronous session a send and a read always return FALSE with ERROR_IO_PENDING and
/// always complete through the status callback, on a thread of this layer. The body, the read
/// buffer and the count belong to the layer until then; a caller that closes the handle earlier
/// keeps them until INTERNET_STATUS_HANDLE_CLOSING.
BOOL HttpSendRequestW(HINTERNET request, LPCWSTR headers, DWORD headersLength, LPVOID body,
                      DWORD bodyLength) noexcept;
BOOL InternetReadFile(HINTERNET request, LPVOID buffer, DWORD size, LPDWORD read) noexcept;

/// A body in parts, on a synchronous session, without redirects: begin, write until all that was
/// announced is written, end. The length is the buffers' total or, where that is 0, the header
/// Content-Length. A write may succeed before the server has the bytes. After one that failed, the
/// end still brings the reply of a server that answered early.
BOOL HttpSendRequestExW(HINTERNET request, LPINTERNET_BUFFERSW buffersIn,
                        LPINTERNET_BUFFERSW buffersOut, DWORD flags, DWORD_PTR context) noexcept;
BOOL InternetWriteFile(HINTERNET request, LPCVOID buffer, DWORD size, LPDWORD written) noexcept;
BOOL HttpEndRequestW(HINTERNET request, LPINTERNET_BUFFERSW buffers, DWORD flags,
                     DWORD_PTR context) noexcept;

BOOL HttpQueryInfoW(HINTERNET request, DWORD infoLevel, LPVOID buffer, LPDWORD length,
                    LPDWORD index) noexcept;
BOOL HttpQueryInfoA(HINTERNET request, DWORD infoLevel, LPVOID buffer, LPDWORD length,
                    LPDWORD index) noexcept;
BOOL InternetCloseHandle(HINTERNET handle) noexcept;

BOOL InternetGetCookieW(LPCWSTR url, LPCWSTR name, LPWSTR buffer, LPDWORD size) noexcept;
BOOL InternetSetCookieW(LPCWSTR url, LPCWSTR name, LPCWSTR data) noexcept;

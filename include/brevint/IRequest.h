#pragma once

#include "brevint/AcceptType.h"
#include "brevint/Export.h"
#include "brevint/WebRequestType.h"

#include <string>
#include <vector>

class IRequestInfo;
class IResponse;

/// One HTTP exchange: configure, send, read, destroy. For one use and one thread at a time.
///
/// No operation reports failure: a failed exchange shows as status 0 and an empty reply.
/// The order of declaration is part of the binary contract.
class BREVINT_INTERFACE IRequest {
public:
    /// Ends the exchange. A reply still under way is dropped: once the destructor has returned,
    /// the response given to SendRequestAsync is not touched any more. The network is not waited
    /// for. While that response is being filled on another thread, the destructor waits until it
    /// has been; a download stops after the block of its file that is being written.
    virtual ~IRequest() = default;

    /// Sets the URL; null stands for an empty one.
    virtual void SetRequestUrl(const wchar_t* url) = 0;
    /// Sets the verb; a value outside the enumeration leaves it as it was.
    virtual void SetRequestType(WebRequestType type) = 0;
    /// Adds a media type to those accepted.
    virtual void AddAcceptType(AcceptType type) = 0;
    /// Adds one header line ("Name: value") without its line end.
    virtual void AddHeader(const wchar_t* header) = 0;
    /// Stores a cookie ("name=value; attributes") for `url` in the process's cookie jar.
    virtual void SetCookie(const wchar_t* url, const wchar_t* data) = 0;
    /// HTTP status of the reply; 0 when there is none.
    virtual unsigned long GetRequestStatus() = 0;
    /// Reads the whole reply as text (UTF-8, up to its first zero byte). Blocks until it is there.
    virtual void GetRequestedData(std::wstring& out) = 0;
    /// Appends the whole reply to `out`. Blocks until it is there. A reply that breaks off before
    /// its announced length adds nothing.
    virtual void GetRequestedData(std::vector<char>& out) = 0;
    /// Cookies that the process's jar would send to the request's URL, as "name=value; name=value".
    virtual void GetCookie(std::wstring& out) = 0;
    /// Sends and blocks until the reply's head has been received.
    virtual void SendRequest() = 0;
    /// Takes over `info` (not kept) and sends as above.
    virtual void SendRequest(IRequestInfo* info) = 0;
    /// Starts the exchange and returns at once. `response` (not owned) is filled exactly once, on a
    /// thread of the platform, or on this one when the exchange cannot be started. It must live
    /// until it has been filled or this request has been destroyed; only a CDownloadFileResponse
    /// may be destroyed at any moment, which ends the exchange.
    virtual void SendRequestAsync(IResponse* response) = 0;
    /// Takes over `info` (not kept) and starts the exchange as above.
    virtual void SendRequestAsync(IRequestInfo* info, IResponse* response) = 0;
    /// Sets the request flags of the platform's internet client (INTERNET_FLAG_...).
    virtual void SetRequestFlags(int flags) = 0;
    /// Sets the body: the text as UTF-8, without a terminator. It stays for every send. A body of
    /// 4 GiB or more cannot be sent: the exchange fails, with status 0.
    virtual void SetUploadData(const wchar_t* data) = 0;
    /// Sets the body: a copy of the bytes. Otherwise as above.
    virtual void SetUploadData(const std::vector<char>& data) = 0;
    /// Forgets the accepted media types.
    virtual void ClearAcceptTypes() = 0;
    /// Forgets the header lines.
    virtual void ClearHeaders() = 0;
    /// Reads the reply's Location header; empty when there is none.
    virtual void GetRedirectUrl(std::wstring& out) = 0;
};

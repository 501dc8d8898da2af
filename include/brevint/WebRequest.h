#pragma once

#include "brevint/IRequest.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class RequestContext;
class ServiceConnection;

/// An HTTP exchange over the platform's internet client.
///
/// For one exchange: sending a second time drops the first one. An https URL is verified against
/// the system's certificates; proxies are the system's.
class BREVINT_API WebRequest : public IRequest {
public:
    WebRequest();
    /// `url` null stands for an empty URL.
    WebRequest(const wchar_t* url, WebRequestType type);
    WebRequest(const WebRequest&) = delete;
    WebRequest& operator=(const WebRequest&) = delete;
    ~WebRequest() override;

    void SetRequestUrl(const wchar_t* url) override;
    void SetRequestType(WebRequestType type) override;
    void AddAcceptType(AcceptType type) override;
    void AddHeader(const wchar_t* header) override;
    void SetCookie(const wchar_t* url, const wchar_t* data) override;
    unsigned long GetRequestStatus() override;
    void GetRequestedData(std::wstring& out) override;
    void GetRequestedData(std::vector<char>& out) override;
    void GetCookie(std::wstring& out) override;
    void SendRequest() override;
    void SendRequest(IRequestInfo* info) override;
    void SendRequestAsync(IResponse* response) override;
    void SendRequestAsync(IRequestInfo* info, IResponse* response) override;
    void SetRequestFlags(int flags) override;
    void SetUploadData(const wchar_t* data) override;
    void SetUploadData(const std::vector<char>& data) override;
    void ClearAcceptTypes() override;
    void ClearHeaders() override;
    void GetRedirectUrl(std::wstring& out) override;
    /// Starts the next read of an asynchronous exchange. Called by the status callback, on a thread
    /// of the platform.
    virtual void GetRequestedDataAsync(RequestContext* context);

    /// Opens session and connection for the current URL; `flags` are those of the session. A URL
    /// that cannot be understood leaves the request without a connection, so that its send fails.
    void Connect(int flags);
    /// The media type of an accept type: a static string.
    static const wchar_t* GetAcceptString(AcceptType type);
    /// Copies a description into this request; accept types and headers are added to those held.
    void ExtractRequestInfo(IRequestInfo* info);

private:
    /// Drops what an earlier send has left: its reply, if that is still under way, and the handles.
    void EndExchange();
    void OpenRequest(RequestContext* context);
    bool Send(std::vector<char>& body);
    std::uint32_t ContentLength() const;
    /// Appends the reply; `asText` ends each chunk of unknown length at its first zero byte.
    void ReadReply(std::vector<char>& out, bool asText);
    void ReadChunks(std::vector<char>& out, bool asText);

    std::unique_ptr<ServiceConnection> m_connection;
    std::wstring m_requestUrl;
    int m_requestFlags = 0;
    /// Null when it is more than can be sent.
    std::shared_ptr<std::vector<char>> m_uploadData;
    /// Owns the request's handle.
    std::shared_ptr<RequestContext> m_context;
    std::vector<AcceptType> m_acceptTypes;
    std::vector<std::wstring> m_headers;
    std::wstring m_verb;
};

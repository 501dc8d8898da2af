#pragma once

#include "brevint/IRequestInfo.h"
#include "transport/RequestFlags.h"

/// What the descriptions of the service's calls have in common. Immutable once constructed.
class CServiceRequestInfo : public IRequestInfo {
public:
    CServiceRequestInfo(const CServiceRequestInfo&) = delete;
    CServiceRequestInfo& operator=(const CServiceRequestInfo&) = delete;

    std::wstring GetRequestUrl() const override;
    WebRequestType GetRequestType() const override;
    void GetAcceptTypes(std::vector<AcceptType>& types) const override;
    std::wstring GetHeaders() const override;
    int GetRequestFlags() const override;
    std::wstring GetUploadString() const override;
    const std::vector<char>& GetUploadData() const override;

protected:
    /// How a call is made.
    struct Method {
        WebRequestType type;
        AcceptType accept;
        int flags;
    };

    /// `path` is the call's resource below the service's address, placeholders filled.
    CServiceRequestInfo(const Method& method, const std::wstring& baseUrl, const std::wstring& path,
                        const std::wstring& body = {});

    std::vector<char> m_uploadData;

private:
    Method m_method;
    std::wstring m_url;
    std::wstring m_body;
};

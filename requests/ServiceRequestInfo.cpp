#include "requests/ServiceRequestInfo.h"

#include "support/UrlBuilder.h"

CServiceRequestInfo::CServiceRequestInfo(const Method& method, const std::wstring& baseUrl,
                                         const std::wstring& path, const std::wstring& body)
    : m_method(method), m_url(BaseHlpr::BuildUrl(baseUrl, path)), m_body(body) {}

std::wstring CServiceRequestInfo::GetRequestUrl() const {
    return m_url;
}

WebRequestType CServiceRequestInfo::GetRequestType() const {
    return m_method.type;
}

void CServiceRequestInfo::GetAcceptTypes(std::vector<AcceptType>& types) const {
    types.push_back(m_method.accept);
}

std::wstring CServiceRequestInfo::GetHeaders() const {
    return {};
}

int CServiceRequestInfo::GetRequestFlags() const {
    return m_method.flags;
}

std::wstring CServiceRequestInfo::GetUploadString() const {
    return m_body;
}

const std::vector<char>& CServiceRequestInfo::GetUploadData() const {
    return m_uploadData;
}

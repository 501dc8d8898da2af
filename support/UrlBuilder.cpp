#include "support/UrlBuilder.h"

#include <algorithm>

void UrlBuilder::Init(const wchar_t* baseUrl) {
    m_baseUrl = baseUrl ? baseUrl : L"";
}

void UrlBuilder::SetPath(const wchar_t* path) {
    m_path = path ? path : L"";
}

const wchar_t* UrlBuilder::GetUrl() {
    if (m_baseUrl.empty()) {
        return nullptr;
    }
    m_url = m_baseUrl;
    if (m_path) {
        m_url.resize(m_url.find_last_not_of(L'/') + 1);
        m_url += L'/';
        m_url.append(*m_path, std::min(m_path->find_first_not_of(L'/'), m_path->size()));
    }
    return m_url.c_str();
}

namespace BaseHlpr {

std::wstring BuildUrl(const std::wstring& baseUrl, const std::wstring& path) {
    UrlBuilder builder;
    builder.Init(baseUrl.c_str());
    builder.SetPath(path.c_str());
    const wchar_t* url = builder.GetUrl();
    return url ? url : L"";
}

} // namespace BaseHlpr

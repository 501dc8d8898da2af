#pragma once

#include "brevint/BaseResponse.h"

/// Version of the service and the versions of the desktop application that it accepts.
class BREVINT_API CVersionInfoResponse : public CBaseResponse {
public:
    CVersionInfoResponse();
    ~CVersionInfoResponse() override;

    void ParseServerResponse() override;
    /// Valid while the response lives.
    const wchar_t* GetSystemVersion() const;
    /// In the server's order.
    std::vector<std::wstring> GetCompatableDesktopVersions() const;
    /// Does nothing: this response recognises no messages.
    void InitErrorMaps();

private:
    std::wstring m_systemVersion;
    std::vector<std::wstring> m_compatibleDesktopVersions;
};

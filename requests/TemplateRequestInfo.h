#pragma once

#include "requests/ServiceRequestInfo.h"

/// Lists the templates of a type.
class CTemplateRequestInfo : public CServiceRequestInfo {
public:
    CTemplateRequestInfo(const std::wstring& baseUrl, const std::wstring& templateTypeId);
};

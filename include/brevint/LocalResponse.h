#pragma once

#include "brevint/BaseResponse.h"

/// A response filled from a stored reply instead of from the service.
class BREVINT_API CLocalResponse : public CBaseResponse {
public:
    /// Fills itself, with status 200, from the stored reply of that name
    /// ("GetFolderContentsResponse"); with an empty reply when none is stored, or when it cannot be
    /// read to its end or held in memory.
    explicit CLocalResponse(const std::wstring& name);
    ~CLocalResponse() override;
};

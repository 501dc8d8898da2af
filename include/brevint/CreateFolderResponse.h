#pragma once

#include "brevint/BaseResponse.h"
#include "brevint/ICreateFolderResponse.h"

/// Outcome of creating a folder.
class BREVINT_API CCreateFolderResponse : public CBaseResponse, public ICreateFolderResponse {
public:
    CCreateFolderResponse();
    ~CCreateFolderResponse() override;

    std::wstring GetFolderId() const override;
    bool GetSucceeded() const override;
    double GetErrorCode() const override;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();
};

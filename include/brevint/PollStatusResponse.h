#pragma once

#include "brevint/BaseResponse.h"
#include "brevint/IPollStatusResponse.h"

/// What the polls of all jobs have in common.
class BREVINT_API CPollStatusResponse : public CBaseResponse, public IPollStatusResponse {
public:
    ~CPollStatusResponse() override;

    int GetStatus() const override;
    const wchar_t* GetItemId() const override;
    void ParseServerResponse() override;

protected:
    CPollStatusResponse();

private:
    int m_status;
    std::wstring m_itemId;
};

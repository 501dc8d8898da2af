#pragma once

#include "brevint/BaseResponse.h"

/// Outcome of asking for an item's path.
class BREVINT_API CPathResponse : public CBaseResponse {
public:
    CPathResponse();
    ~CPathResponse() override;

    /// Any XML reply with status 200 succeeds; other replies are judged by their message.
    void ParseServerResponse() override;
    /// The path; empty unless the call succeeded. Valid while the response lives.
    const wchar_t* GetPath() const;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();

private:
    std::wstring m_path;
};

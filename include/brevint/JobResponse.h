#pragma once

#include "brevint/BaseResponse.h"
#include "brevint/IJobResponse.h"

/// What uploads and overwrites have in common: a reply that names the server-side job.
class BREVINT_API CJobResponse : public CBaseResponse, public IJobResponse {
public:
    ~CJobResponse() override;

    const wchar_t* GetJobId() const override;
    void ParseServerResponse() override;

protected:
    CJobResponse();

private:
    std::wstring m_jobId;
};

#include "brevint/JobResponse.h"

#include "brevint/ErrorCodes.h"
#include "support/Xml.h"

CJobResponse::CJobResponse() = default;

CJobResponse::~CJobResponse() = default;

const wchar_t* CJobResponse::GetJobId() const {
    return m_jobId.c_str();
}

void CJobResponse::ParseServerResponse() {
    const XmlDocPtr document = ParseReply();
    if (!document) {
        return;
    }
    if (GetStatusCode() != 200) {
        TakeServerMessage(SimpleDoXPath(kMessagePath, document.get()));
        return;
    }
    _xmlNode* jobId = SimpleDoXPath("/ResponseData/JobId", document.get());
    m_jobId = GetWideNodeValue(jobId);
    SetErrorCode(jobId ? ErrorCode::Success : ErrorCode::JobIdMissing);
}

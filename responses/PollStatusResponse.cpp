#include "brevint/PollStatusResponse.h"

#include "brevint/ErrorCodes.h"
#include "brevint/JobStatus.h"
#include "support/Xml.h"

// A job that could not be asked counts as failed.
CPollStatusResponse::CPollStatusResponse() : m_status(JobStatus::Failed) {}

CPollStatusResponse::~CPollStatusResponse() = default;

int CPollStatusResponse::GetStatus() const {
    return m_status;
}

const wchar_t* CPollStatusResponse::GetItemId() const {
    return m_itemId.c_str();
}

void CPollStatusResponse::ParseServerResponse() {
    const XmlDocPtr document = ParseReply();
    if (!document) {
        return;
    }
    if (GetStatusCode() != 200) {
        TakeServerMessage(SimpleDoXPath(kMessagePath, document.get()));
        m_status = JobStatus::Failed;
        return;
    }
    const std::string state = GetNodeValue(SimpleDoXPath("/ResponseData/Status", document.get()));
    _xmlNode* details = SimpleDoXPath("/ResponseData/Details", document.get());
    if (state == "2") {
        if (details) {
            m_itemId = GetWideNodeValue(details);
            SetErrorCode(ErrorCode::Success);
        }
        m_status = details ? JobStatus::Finished : JobStatus::Failed;
    } else if (state == "3") {
        TakeServerMessage(details);
        m_status = JobStatus::Failed;
    } else if (state == "1" || state == "0") {
        SetErrorCode(ErrorCode::Success);
        m_status = JobStatus::Unfinished;
    }
}

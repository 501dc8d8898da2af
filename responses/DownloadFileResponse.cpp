#include "brevint/DownloadFileResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"
#include "support/Files.h"

#include <new>

CDownloadFileResponse::CDownloadFileResponse() {
    InitErrorMaps();
}

CDownloadFileResponse::~CDownloadFileResponse() = default;

void CDownloadFileResponse::SetFileDestination(const std::wstring& path) {
    m_fileDestination = path;
}

const wchar_t* CDownloadFileResponse::GetFileDestination() const {
    return m_fileDestination.c_str();
}

bool CDownloadFileResponse::IsComplete() const {
    return m_complete.load(std::memory_order_acquire);
}

void CDownloadFileResponse::SetServerResponse(const std::vector<char>& bytes,
                                              unsigned long status) {
    try {
        StoreReply(bytes, status);
        ParseServerResponse();
    } catch (const std::bad_alloc&) {
        DropReply();
    }
}

void CDownloadFileResponse::ParseServerResponse() {
    if (GetStatusCode() == 200 && !GetServerResponse().empty()) {
        SetErrorCode(WriteFileToDisk() ? ErrorCode::Success : ErrorCode::DownloadWriteFailed);
    } else {
        TakeReplyAsText();
        CBaseResponse::ParseServerResponse();
    }
    m_complete.store(true, std::memory_order_release);
}

bool CDownloadFileResponse::WriteFileToDisk() {
    if (BaseHlpr::IsFileReadOnly(m_fileDestination)) {
        BaseHlpr::RemoveReadOnly(m_fileDestination);
        DeleteFileW(m_fileDestination.c_str());
    }
    FilePtr file(_wfopen(m_fileDestination.c_str(), L"w+b"));
    if (!file) {
        return false;
    }
    const std::vector<char>& bytes = GetServerResponse();
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
    // Bytes that are still buffered can fail to reach the disk as late as here.
    const bool closed = std::fclose(file.release()) == 0;
    return written && closed;
}

bool CDownloadFileResponse::GetSucceeded() const {
    return CBaseResponse::GetSucceeded();
}

double CDownloadFileResponse::GetErrorCode() const {
    return CBaseResponse::GetErrorCode();
}

const std::vector<char>& CDownloadFileResponse::GetServerResponse() const {
    return CBaseResponse::GetServerResponse();
}

void CDownloadFileResponse::InitErrorMaps() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
        {ErrorMessage::ItemNotFound, ErrorCode::DownloadItemNotFound},
        {ErrorMessage::InvalidId, ErrorCode::DownloadInvalidId},
    };
    AddExactMessages(kExact);
}

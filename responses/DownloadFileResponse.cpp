#include "brevint/DownloadFileResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"
#include "support/Files.h"
#include "transport/RequestContext.h"

#include <algorithm>
#include <new>
#include <span>
#include <utility>

namespace {

/// What is written of a file at a time. Whoever destroys the response waits for one block.
constexpr std::size_t kBlockSize = std::size_t{1} << 20;

} // namespace

CDownloadFileResponse::CDownloadFileResponse() {
    InitErrorMaps();
}

CDownloadFileResponse::~CDownloadFileResponse() {
    Detach();
}

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
    const auto isGivenUp = [this] {
        return m_exchange && m_exchange->IsWaitedFor();
    };
    if (isGivenUp()) {
        return false;
    }
    if (BaseHlpr::IsFileReadOnly(m_fileDestination)) {
        BaseHlpr::RemoveReadOnly(m_fileDestination);
        DeleteFileW(m_fileDestination.c_str());
    }
    FilePtr file(_wfopen(m_fileDestination.c_str(), L"w+b"));
    if (!file) {
        return false;
    }
    std::span<const char> rest = GetServerResponse();
    bool written = true;
    while (written && !rest.empty()) {
        const auto block = rest.first(std::min(rest.size(), kBlockSize));
        written =
            !isGivenUp() && std::fwrite(block.data(), 1, block.size(), file.get()) == block.size();
        rest = rest.subspan(block.size());
    }
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

void CDownloadFileResponse::Attach(std::shared_ptr<RequestContext> exchange) {
    Detach();
    m_exchange = std::move(exchange);
}

void CDownloadFileResponse::Detach() noexcept {
    if (m_exchange) {
        m_exchange->Abandon();
    }
}

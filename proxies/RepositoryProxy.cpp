#include "brevint/RepositoryProxy.h"

#include "brevint/CheckInOutResponse.h"
#include "brevint/CreateFolderResponse.h"
#include "brevint/DeleteResponse.h"
#include "brevint/GetFolderContentsResponse.h"
#include "brevint/IRequest.h"
#include "brevint/IRequestFactory.h"
#include "brevint/LocalDownloadFileResponse.h"
#include "brevint/OverwriteFileResponse.h"
#include "brevint/PathResponse.h"
#include "brevint/PollOverwriteStatusResponse.h"
#include "brevint/PollUploadStatusResponse.h"
#include "brevint/UploadFileResponse.h"
#include "proxies/CallService.h"
#include "requests/CheckInOutRequestInfo.h"
#include "requests/CreateFolderRequestInfo.h"
#include "requests/DeleteRequestInfo.h"
#include "requests/DownloadFileRequestInfo.h"
#include "requests/GetFolderContentsRequestInfo.h"
#include "requests/OverwriteFileRequestInfo.h"
#include "requests/PathRequestInfo.h"
#include "requests/PollFileStatusRequestInfo.h"
#include "requests/UploadFileRequestInfo.h"
#include "responses/LocalResponseStore.h"

#include <new>

namespace {

/// Every synchronous operation: a response of its own, filled by one exchange.
template <class Response, class Info, class... Arguments>
Response* Call(CRepositoryProxy& proxy, const Arguments&... arguments) {
    try {
        auto response = std::make_unique<Response>();
        Info info(arguments...);
        proxy.MakeRequest(&info, response.get());
        return response.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

CRepositoryProxy::CRepositoryProxy(IRequestFactory* factory) : m_factory(factory) {}

CRepositoryProxy::~CRepositoryProxy() = default;

CCheckInOutResponse* CRepositoryProxy::CheckOut(const std::wstring& baseUrl,
                                                const std::wstring& itemId) {
    return Call<CCheckInOutResponse, CCheckInOutRequestInfo>(*this, baseUrl, itemId,
                                                             CCheckInOutRequestInfo::kCheckOut);
}

CCheckInOutResponse* CRepositoryProxy::CheckIn(const std::wstring& baseUrl,
                                               const std::wstring& itemId) {
    return Call<CCheckInOutResponse, CCheckInOutRequestInfo>(*this, baseUrl, itemId,
                                                             CCheckInOutRequestInfo::kCheckIn);
}

IDownloadFileResponse* CRepositoryProxy::DownloadFile(const std::wstring& baseUrl,
                                                      const std::wstring& fileId,
                                                      const std::wstring& destination) {
    try {
        if (LocalResponseStore::Holds(CLocalDownloadFileResponse::kStoredName)) {
            return new CLocalDownloadFileResponse(destination);
        }
        auto response = std::make_unique<CDownloadFileResponse>();
        response->SetFileDestination(destination);
        CDownloadFileRequestInfo info(baseUrl, fileId);
        MakeRequestAsync(&info, response.get());
        return response.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

COverwriteFileResponse* CRepositoryProxy::OverwriteFile(const std::wstring& baseUrl,
                                                        const std::wstring& fileId,
                                                        const std::wstring& filePath) {
    return Call<COverwriteFileResponse, COverwriteFileRequestInfo>(*this, baseUrl, fileId,
                                                                   filePath);
}

CUploadFileResponse* CRepositoryProxy::UploadFile(const std::wstring& baseUrl,
                                                  const std::wstring& parentId,
                                                  const std::wstring& filePath) {
    return Call<CUploadFileResponse, CUploadFileRequestInfo>(*this, baseUrl, parentId, filePath);
}

IGetFolderContentsResponse* CRepositoryProxy::GetFolderContents(const std::wstring& baseUrl,
                                                                const std::wstring& parentId) {
    return Call<CGetFolderContentsResponse, CGetFolderContentsRequestInfo>(*this, baseUrl,
                                                                           parentId);
}

CPathResponse* CRepositoryProxy::GetPath(const std::wstring& baseUrl, const std::wstring& itemId) {
    return Call<CPathResponse, CPathRequestInfo>(*this, baseUrl, itemId);
}

ICreateFolderResponse* CRepositoryProxy::CreateFolder(const std::wstring& baseUrl,
                                                      const std::wstring& parentId,
                                                      const std::wstring& name) {
    return Call<CCreateFolderResponse, CCreateFolderRequestInfo>(*this, baseUrl, parentId, name);
}

CDeleteResponse* CRepositoryProxy::Delete(const std::wstring& baseUrl, const std::wstring& itemId) {
    return Call<CDeleteResponse, CDeleteRequestInfo>(*this, baseUrl, itemId);
}

IPollStatusResponse* CRepositoryProxy::PollUploadFileStatus(const std::wstring& baseUrl,
                                                            const std::wstring& jobId) {
    return Call<CPollUploadStatusResponse, CPollFileStatusRequestInfo>(*this, baseUrl, jobId);
}

IPollStatusResponse* CRepositoryProxy::PollOverwriteFileStatus(const std::wstring& baseUrl,
                                                               const std::wstring& jobId) {
    return Call<CPollOverwriteStatusResponse, CPollFileStatusRequestInfo>(*this, baseUrl, jobId);
}

void CRepositoryProxy::MakeRequest(IRequestInfo* info, IResponse* response) {
    CallService(*m_factory, *info, *response);
}

void CRepositoryProxy::MakeRequestAsync(IRequestInfo* info, IResponse* response) {
    // Kept first: once the exchange is under way, nothing may fail any more.
    m_outstanding.push_back(std::unique_ptr<IRequest>(m_factory->Create()));
    m_outstanding.back()->SendRequestAsync(info, response);
}

#pragma once

#include "brevint/IRepositoryProxy.h"

#include <memory>
#include <vector>

class IRequest;
class IRequestFactory;
class IRequestInfo;
class IResponse;

/// The repository over HTTP.
///
/// Requests of downloads live until the proxy is destroyed. Destroying it ends downloads that are
/// still running: their responses are not touched any more, and never become complete. One whose
/// file is being written ends with the code 1302. Proxy and responses may go in any order.
class BREVINT_API CRepositoryProxy : public IRepositoryProxy {
public:
    /// `factory` is not owned and must outlive the proxy.
    explicit CRepositoryProxy(IRequestFactory* factory);
    CRepositoryProxy(const CRepositoryProxy&) = delete;
    CRepositoryProxy& operator=(const CRepositoryProxy&) = delete;
    ~CRepositoryProxy() override;

    CCheckInOutResponse* CheckOut(const std::wstring& baseUrl, const std::wstring& itemId) override;
    CCheckInOutResponse* CheckIn(const std::wstring& baseUrl, const std::wstring& itemId) override;
    IDownloadFileResponse* DownloadFile(const std::wstring& baseUrl, const std::wstring& fileId,
                                        const std::wstring& destination) override;
    COverwriteFileResponse* OverwriteFile(const std::wstring& baseUrl, const std::wstring& fileId,
                                          const std::wstring& filePath) override;
    CUploadFileResponse* UploadFile(const std::wstring& baseUrl, const std::wstring& parentId,
                                    const std::wstring& filePath) override;
    IGetFolderContentsResponse* GetFolderContents(const std::wstring& baseUrl,
                                                  const std::wstring& parentId) override;
    CPathResponse* GetPath(const std::wstring& baseUrl, const std::wstring& itemId) override;
    ICreateFolderResponse* CreateFolder(const std::wstring& baseUrl, const std::wstring& parentId,
                                        const std::wstring& name) override;
    CDeleteResponse* Delete(const std::wstring& baseUrl, const std::wstring& itemId) override;
    IPollStatusResponse* PollUploadFileStatus(const std::wstring& baseUrl,
                                              const std::wstring& jobId) override;
    IPollStatusResponse* PollOverwriteFileStatus(const std::wstring& baseUrl,
                                                 const std::wstring& jobId) override;

    /// Carries out one exchange and fills `response`. Neither argument is kept.
    void MakeRequest(IRequestInfo* info, IResponse* response);
    /// Starts one exchange; `response` is filled later, on another thread. `info` is not kept.
    void MakeRequestAsync(IRequestInfo* info, IResponse* response);

private:
    IRequestFactory* m_factory;
    std::vector<std::unique_ptr<IRequest>> m_outstanding;
};

#pragma once

#include "brevint/Export.h"

#include <string>

class CCheckInOutResponse;
class CDeleteResponse;
class COverwriteFileResponse;
class CPathResponse;
class CUploadFileResponse;
class ICreateFolderResponse;
class IDownloadFileResponse;
class IGetFolderContentsResponse;
class IPollStatusResponse;

/// The repository: folders, files and the jobs that process sent files.
///
/// `baseUrl` is the address of the service, for example "https://host/app". Identifiers and names
/// go into URLs and bodies as they are. Every operation blocks until the reply is there, except
/// DownloadFile, and returns a new response that the caller deletes (null only without memory);
/// what failed is read from it. One thread at a time. The order of declaration is part of the
/// binary contract.
class BREVINT_INTERFACE IRepositoryProxy {
public:
    virtual ~IRepositoryProxy() = default;

    /// Locks an item for the user.
    virtual CCheckInOutResponse* CheckOut(const std::wstring& baseUrl,
                                          const std::wstring& itemId) = 0;
    /// Releases an item that the user has checked out.
    virtual CCheckInOutResponse* CheckIn(const std::wstring& baseUrl,
                                         const std::wstring& itemId) = 0;
    /// Starts to download a file to a local path and returns at once. The response is filled on
    /// another thread: poll IsComplete. Neither the response nor this proxy's request factory may
    /// be destroyed while the transfer runs, unless this proxy is destroyed first, which ends it.
    virtual IDownloadFileResponse* DownloadFile(const std::wstring& baseUrl,
                                                const std::wstring& fileId,
                                                const std::wstring& destination) = 0;
    /// Sends a local file as the new content of a file. The reply names a job to be polled.
    virtual COverwriteFileResponse* OverwriteFile(const std::wstring& baseUrl,
                                                  const std::wstring& fileId,
                                                  const std::wstring& filePath) = 0;
    /// Sends a local file into a folder. The reply names a job to be polled.
    virtual CUploadFileResponse* UploadFile(const std::wstring& baseUrl,
                                            const std::wstring& parentId,
                                            const std::wstring& filePath) = 0;
    /// Lists what a folder holds.
    virtual IGetFolderContentsResponse* GetFolderContents(const std::wstring& baseUrl,
                                                          const std::wstring& parentId) = 0;
    /// Asks for an item's path.
    virtual CPathResponse* GetPath(const std::wstring& baseUrl, const std::wstring& itemId) = 0;
    /// Makes a folder in a folder.
    virtual ICreateFolderResponse* CreateFolder(const std::wstring& baseUrl,
                                                const std::wstring& parentId,
                                                const std::wstring& name) = 0;
    /// Deletes an item, a folder with all that it holds.
    virtual CDeleteResponse* Delete(const std::wstring& baseUrl, const std::wstring& itemId) = 0;
    /// Asks how the job of an upload stands.
    virtual IPollStatusResponse* PollUploadFileStatus(const std::wstring& baseUrl,
                                                      const std::wstring& jobId) = 0;
    /// Asks how the job of an overwrite stands.
    virtual IPollStatusResponse* PollOverwriteFileStatus(const std::wstring& baseUrl,
                                                         const std::wstring& jobId) = 0;
};

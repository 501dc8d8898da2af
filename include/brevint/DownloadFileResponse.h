#pragma once

#include "brevint/BaseResponse.h"
#include "brevint/IDetachable.h"
#include "brevint/IDownloadFileResponse.h"

#include <atomic>
#include <memory>

/// Outcome of a download. Filled on a thread of the platform; until IsComplete is true nothing else
/// may be read.
class BREVINT_API CDownloadFileResponse : public CBaseResponse,
                                          public IDownloadFileResponse,
                                          public IDetachable {
public:
    CDownloadFileResponse();
    /// Ends the download if it is still running, without waiting for the network. While the file is
    /// being written on another thread, the destructor waits for the block of 1 MiB under way, and
    /// the beginning of the file stays. Not so for classes that are derived from this one: there,
    /// destroy the request or the proxy first.
    ~CDownloadFileResponse() override;

    /// Sets the local path to write to. To be called before the download starts.
    void SetFileDestination(const std::wstring& path);
    /// The local path; valid while the response lives.
    const wchar_t* GetFileDestination() const;
    bool IsComplete() const override;
    /// Takes the reply and writes it to the destination when the status is 200. The bytes are not
    /// turned into text, unless they are the server's account of a failure.
    void SetServerResponse(const std::vector<char>& bytes, unsigned long status) override;
    void ParseServerResponse() override;
    /// Writes the reply's bytes to the destination, in place of a file there, a read-only one too.
    /// True when every byte has been written; otherwise a partly written file may be left, also
    /// when the request is destroyed meanwhile.
    bool WriteFileToDisk();
    bool GetSucceeded() const override;
    double GetErrorCode() const override;
    const std::vector<char>& GetServerResponse() const override;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();
    void Attach(std::shared_ptr<RequestContext> exchange) override;

private:
    void Detach() noexcept;

    std::wstring m_fileDestination;
    /// Set last, with release: it alone publishes the response to the waiting thread.
    std::atomic<bool> m_complete{false};
    /// The exchange that fills this response; null when it is filled directly.
    std::shared_ptr<RequestContext> m_exchange;
};

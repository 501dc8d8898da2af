#pragma once

#include "transfers/FormSource.h"
#include "transfers/Transfer.h"

#include <filesystem>
#include <string>

namespace transfers {

/// What is sent, and where to.
struct UploadRequest {
    enum class Kind {
        NewFile, ///< Into the folder `target`.
        Content, ///< As the new content of the file `target`.
    };
    Kind kind = Kind::NewFile;
    std::wstring target;
    std::filesystem::path path;
};

/// Sends a local file, and then waits for the service's job. It is sent again only where the
/// service cannot have had all of it.
class Upload final : public Transfer {
public:
    Upload(std::shared_ptr<const Service> service, UploadRequest request,
           TransferListener listener);

private:
    Step Run() override;
    Step Poll() override;
    bool OnCancel(TransferOutcome& outcome) noexcept override;

    Result Attempt() override;
    Step OnComplete() override { return Step::Poll; }
    /// Sends the file once.
    Result Send();
    Result AcceptReply(IStreamingExchange& exchange);
    /// The poll brought no answer.
    Step PollAgain();

    const UploadRequest m_request;
    FormSource m_source;

    std::mutex m_jobMutex;
    std::wstring m_jobId; ///< Set once the service has the file. Under the mutex.
};

} // namespace transfers

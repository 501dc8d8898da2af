#pragma once

#include "support/LocalFileWriter.h"
#include "transfers/Attempts.h"
#include "transfers/PartRecord.h"
#include "transfers/Transfer.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace transfers {

/// What is fetched, and where to.
struct DownloadRequest {
    std::wstring itemId;
    std::filesystem::path destination;
    std::uint64_t listedSize = kUnknownSize; ///< As the listing of its folder says.
    bool durable = false;                    ///< Flushed to the disk before it takes its place.
    bool keepsPart = false;                  ///< When it is cancelled, for a later transfer.
};

/// Fetches a file. It goes to a part file beside its destination, which it replaces in one step at
/// the end; until then nothing there changes. A part that was left is gone on with, if the file is
/// the same.
class Download final : public Transfer {
public:
    Download(std::shared_ptr<const Service> service, DownloadRequest request,
             TransferListener listener);

    bool Finish() override;

    ~Download() override;

private:
    /// How an attempt ended.
    enum class Result {
        Content,  ///< The content of the file follows, from m_size on.
        Complete, ///< All of the file is in the part.
        Again,    ///< What was in the part is of no use: at once.
        Later,    ///< After a pause.
        SignIn,
        Cancelled,
        Failed, ///< m_result says how.
    };

    Step Run() override;
    bool OnCancel(TransferOutcome& outcome) noexcept override;

    bool OpenPart();
    Result Attempt();
    Result AcceptHead(IStreamingExchange& exchange);
    Result AcceptWhole();
    Result AcceptRest(const PartRecord& record);
    Result RefuseReply(IStreamingExchange& exchange);
    Result ReadContent(IStreamingExchange& exchange);
    /// Writes the first bytes of the block. Content: more may follow.
    Result Write(std::string_view bytes);
    Step PutInPlace();
    Step EndAsFailed();

    /// Forgets what is in the part; the record says what comes instead, which may be nothing yet.
    Result BeginAnew(std::optional<PartRecord> record);
    bool WriteRecord(std::uint64_t kept);
    Result Fail(double code, std::wstring text);

    const DownloadRequest m_request;
    const std::wstring m_url;
    Attempts m_attempts;
    StreamHead m_head; ///< Of the last reply.
    std::uint64_t m_expected = kUnknownSize;
    TransferOutcome m_result; ///< As far as is known.

    /// The file is written on the transfer's thread, and given up on whichever cancels.
    std::mutex m_fileMutex; ///< For what follows.
    LocalFileWriter m_file;
    std::uint64_t m_size = 0;           ///< Bytes in the part.
    std::optional<PartRecord> m_record; ///< None: the part cannot be gone on with.
    bool m_isOpen = false;
    bool m_isGivenUp = false;
    bool m_isComplete = false; ///< In place, or kept beside it.
    bool m_isKeptBeside = false;
};

} // namespace transfers

#pragma once

#include "support/LocalFileWriter.h"
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
    Step Run() override;
    bool OnCancel(TransferOutcome& outcome) noexcept override;

    bool OpenPart();
    Result Attempt() override;
    /// GoesOn, as those after it: the content of the file follows, from m_size on.
    Result AcceptHead(IStreamingExchange& exchange);
    Result AcceptWhole();
    Result AcceptRest(const PartRecord& record);
    Result RefuseReply(IStreamingExchange& exchange);
    Result ReadContent(IStreamingExchange& exchange);
    Result Write(std::string_view bytes);
    Result FailAsPage();
    /// Puts the file in place.
    Step OnComplete() override;
    Step EndAsFailed() override;

    /// Forgets what is in the part; the record says what comes instead, which may be nothing yet.
    Result BeginAnew(std::optional<PartRecord> record);
    bool WriteRecord(std::uint64_t kept);

    const DownloadRequest m_request;
    const std::wstring m_url;
    std::uint64_t m_expected = kUnknownSize;
    std::uint64_t m_inherited = 0; ///< Bytes of the part that an earlier transfer has left.

    /// The file is written on the transfer's thread, and given up on whichever cancels.
    std::mutex m_fileMutex; ///< For what follows.
    LocalFileWriter m_file;
    std::uint64_t m_size = 0;           ///< Bytes in the part.
    std::optional<PartRecord> m_record; ///< None: the part cannot be gone on with.
    bool m_isRecorded = false;          ///< whether it lies beside the part
    bool m_isOpen = false;
    bool m_isGivenUp = false;
    bool m_isComplete = false; ///< In place, or kept beside it.
    bool m_isKeptBeside = false;
};

} // namespace transfers

#include "transfers/Download.h"

#include "base/Ascii.h"
#include "brevint/DownloadFileResponse.h"
#include "brevint/ErrorCodes.h"
#include "calls/FailureText.h"
#include "calls/Page.h"
#include "requests/DownloadFileRequestInfo.h"
#include "support/Utf8.h"
#include "transfers/HttpFields.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace transfers {

using calls::BeginsAsPage;
using calls::FailureText;
using calls::FileFailureText;
using calls::IsPageType;

namespace {

constexpr std::size_t kBlockSize = 256 * 1024;

/// What identifies the content that a reply has; empty when nothing does for certain.
std::wstring Validator(const StreamHead& head) {
    const bool isStrong = !head.entityTag.empty() && !head.entityTag.starts_with(L"W/");
    const std::wstring& validator = isStrong ? head.entityTag : head.lastModified;
    return validator.find_first_of(L"\r\n") == std::wstring::npos ? validator : std::wstring();
}

} // namespace

Download::Download(std::shared_ptr<const Service> service, DownloadRequest request,
                   TransferListener listener)
    : Transfer(std::move(service), std::move(listener)), m_request(std::move(request)),
      m_url(CDownloadFileRequestInfo(TheService().Url(), m_request.itemId).GetRequestUrl()) {
    m_result.localPath = m_request.destination;
    m_result.itemId = m_request.itemId;
    SetTotal(m_request.listedSize);
}

Download::~Download() {
    if (m_isKeptBeside) {
        m_file.Keep();
    }
}

Transfer::Step Download::Run() {
    if (!CheckIdentifier(m_request.itemId, ErrorCode::DownloadInvalidId)) {
        return EndAsFailed();
    }
    if (!OpenPart()) {
        return Stop().IsRaised() ? Step::Ended : EndAsFailed();
    }
    return RunAttempts();
}

bool Download::OpenPart() {
    if (m_isOpen) {
        return true;
    }
    std::unique_lock lock(m_fileMutex);
    if (m_isGivenUp) {
        return false;
    }
    // A pipe waits for its reader, and a cancel must not wait for that.
    std::error_code unknown;
    const bool mayWait = std::filesystem::is_fifo(m_request.destination, unknown);
    if (mayWait) {
        lock.unlock();
    }
    const std::error_code reason =
        m_file.Open(m_request.destination, LocalFileWriter::Part::Resumable);
    if (mayWait) {
        lock.lock();
    }
    if (m_isGivenUp) {
        m_file.Abandon();
        return false;
    }
    if (reason) {
        Fail(ErrorCode::DownloadWriteFailed,
             reason == std::errc::device_or_resource_busy
                 ? L"Another transfer is writing the same file."
                 : FileFailureText(L"The file cannot be written", reason));
        return false;
    }
    m_isOpen = true;
    m_size = m_file.Size();
    m_record = PartRecord::Parse(m_file.ReadRecord());
    const bool fits =
        m_record && m_record->url == m_url && m_size >= m_record->kept &&
        m_size <= m_record->total &&
        (m_request.listedSize == kUnknownSize || m_request.listedSize == m_record->total);
    m_isRecorded = fits;
    if (!fits) {
        m_record.reset();
    }
    lock.unlock(); // the listener may cancel, which takes it
    if (fits) {
        m_inherited = m_size;
        Report(m_size);
    }
    return true;
}

Download::Result Download::Attempt() {
    const auto exchange = TheService().MakeExchange(TheService().Timeouts());
    const calls::StopSignal::Guard guard(Stop(), *exchange);
    std::wstring headers;
    if (m_record && m_size != 0) {
        headers = L"Range: bytes=" + std::to_wstring(m_size) + L"-\r\nIf-Range: " +
                  m_record->validator + L"\r\n";
    } else if (m_size != 0) {
        if (const Result begun = BeginAnew({}); begun != Result::GoesOn) {
            return begun;
        }
    }
    BeginExchange();
    m_result.failure = exchange->Send(
        CDownloadFileRequestInfo(TheService().Url(), m_request.itemId), headers, nullptr);
    switch (m_result.failure) {
    case ExchangeFailure::None: break;
    case ExchangeFailure::Cancelled: return Result::Cancelled;
    case ExchangeFailure::CertificateNotTrusted:
        return Fail(ErrorCode::EmptyReply, FailureText(m_result.failure));
    default: return Result::Later;
    }
    m_head = exchange->Head();
    m_result.status = m_head.status;
    const Result accepted = AcceptHead(*exchange);
    return accepted == Result::GoesOn ? ReadContent(*exchange) : accepted;
}

Download::Result Download::AcceptHead(IStreamingExchange& exchange) {
    constexpr unsigned long kOk = 200;
    constexpr unsigned long kPartial = 206;
    constexpr unsigned long kRangeNotSatisfiable = 416;
    switch (m_head.status) {
    case kOk: return AcceptWhole();
    case kPartial:
    case kRangeNotSatisfiable: return m_record ? AcceptRest(*m_record) : RefuseReply(exchange);
    default: return RefuseReply(exchange);
    }
}

Download::Result Download::AcceptWhole() {
    const std::uint64_t length = m_head.length.value_or(kUnknownSize);
    const bool isAsListed = length != kUnknownSize && length == m_request.listedSize;
    if (IsPageType(m_head.contentType) && !isAsListed) {
        return FailAsPage();
    }
    if (length != kUnknownSize && m_request.listedSize != kUnknownSize && !isAsListed) {
        return Fail(ErrorCode::EmptyReply, L"The file has another size than its listing says.");
    }
    m_expected = std::min(length, m_request.listedSize);
    SetTotal(m_expected);
    std::optional<PartRecord> record;
    if (std::wstring validator = Validator(m_head);
        !validator.empty() && m_expected != kUnknownSize) {
        record = PartRecord{m_url, std::move(validator), m_expected, 0};
    }
    return BeginAnew(std::move(record));
}

Download::Result Download::AcceptRest(const PartRecord& record) {
    const ContentRange range =
        ParseContentRange(Utf8::ToNarrow(m_head.contentRange)).value_or(ContentRange());
    const std::wstring validator = Validator(m_head);
    const bool isSame = validator.empty() || validator == record.validator;
    const bool isNothing = range.first == kUnknownSize && m_size == record.total;
    const bool follows = range.first == m_size || isNothing;
    const bool fits = isSame && follows &&
                      (range.total == kUnknownSize ? !isNothing : range.total == record.total);
    if (!fits) {
        const Result begun = BeginAnew({});
        return begun == Result::GoesOn ? Result::Again : begun;
    }
    m_expected = record.total;
    SetTotal(m_expected);
    SetResumed(m_inherited);
    return isNothing ? Result::Complete : Result::GoesOn;
}

Download::Result Download::BeginAnew(std::optional<PartRecord> record) {
    const std::scoped_lock lock(m_fileMutex);
    if (m_isGivenUp) {
        return Result::Cancelled;
    }
    if (m_file.IsDirect()) {
        return m_size == 0 ? Result::GoesOn
                           : Fail(ErrorCode::EmptyReply, FailureText(ExchangeFailure::BrokenOff));
    }
    const std::error_code reason = m_size == 0 ? std::error_code() : m_file.Truncate(0);
    m_size = 0;
    m_inherited = 0;
    SetResumed(0);
    m_record = std::move(record);
    m_isRecorded = false;
    return reason ? Fail(ErrorCode::DownloadWriteFailed,
                         FileFailureText(L"The file cannot be written", reason))
                  : Result::GoesOn;
}

Download::Result Download::RefuseReply(IStreamingExchange& exchange) {
    std::vector<char> body;
    m_result.failure = TheService().ReadAll(exchange, body);
    if (m_result.failure == ExchangeFailure::Cancelled) {
        return Result::Cancelled;
    }
    CDownloadFileResponse response;
    response.SetServerResponse(body, m_head.status);
    m_result.serverMessage = response.GetServerErrorMessage();
    return JudgeReply(response);
}

Download::Result Download::ReadContent(IStreamingExchange& exchange) {
    const auto block = std::make_unique_for_overwrite<char[]>(kBlockSize);
    for (;;) {
        std::size_t count = 0;
        m_result.failure = exchange.Read(block.get(), kBlockSize, count);
        if (m_result.failure == ExchangeFailure::Cancelled) {
            return Result::Cancelled;
        }
        if (count > 0) {
            if (const Result written = Write({block.get(), count}); written != Result::GoesOn) {
                return written;
            }
        }
        if (m_result.failure != ExchangeFailure::None) {
            return Result::Later;
        }
        if (count == 0) {
            break;
        }
    }
    if (m_expected != kUnknownSize && m_size < m_expected) {
        m_result.failure = ExchangeFailure::BrokenOff;
        return Result::Later;
    }
    return Result::Complete;
}

Download::Result Download::FailAsPage() {
    return Fail(ErrorCode::ReplyNotXml, L"The reply is a page, not the file.");
}

Download::Result Download::Write(std::string_view bytes) {
    if (m_size == 0 && m_request.listedSize == kUnknownSize && m_head.contentType.empty() &&
        BeginsAsPage(bytes)) {
        return FailAsPage();
    }
    if (bytes.size() > m_expected - m_size) {
        return Fail(ErrorCode::EmptyReply, L"The file is longer than announced.");
    }
    {
        const std::scoped_lock lock(m_fileMutex);
        if (m_isGivenUp) {
            return Result::Cancelled;
        }
        std::error_code reason = m_file.Write(bytes);
        m_size += reason ? 0 : bytes.size();
        // Nobody goes on with a file that is here at once.
        if (!reason && m_record && !m_isRecorded && m_size < m_expected) {
            reason = m_file.WriteRecord(m_record->Text());
            m_isRecorded = true;
        }
        if (reason) {
            return Fail(ErrorCode::DownloadWriteFailed,
                        FileFailureText(L"The file cannot be written", reason));
        }
    }
    m_attempts.Restart();
    Report(m_size);
    return Result::GoesOn;
}

Transfer::Step Download::OnComplete() {
    m_result.code = ErrorCode::Success;
    m_result.verified = m_expected != kUnknownSize;
    SetTotal(m_size);
    Report(m_size);
    std::error_code reason;
    {
        const std::scoped_lock lock(m_fileMutex);
        if (m_isGivenUp) {
            return Step::Ended;
        }
        reason = m_file.Finish(m_request.durable);
        m_isComplete = true;
        m_isKeptBeside = reason && !m_file.IsDirect();
        WriteRecord(m_size);
    }
    if (reason) {
        m_result.code = ErrorCode::DownloadWriteFailed;
        m_result.keptBeside = m_isKeptBeside;
        m_result.text = FileFailureText(L"The file has arrived, but cannot take its place", reason);
    }
    End(reason ? TransferState::Failed : TransferState::Finished, std::move(m_result));
    return Step::Ended;
}

Transfer::Step Download::EndAsFailed() {
    {
        const std::scoped_lock lock(m_fileMutex);
        if (m_isGivenUp) {
            return Step::Ended;
        }
        m_isComplete = true;
        if (m_result.isTemporary && m_size != 0 && WriteRecord(m_size)) {
            m_file.Keep();
        } else {
            m_file.Abandon();
        }
    }
    return Transfer::EndAsFailed();
}

bool Download::Finish() {
    const std::scoped_lock lock(m_fileMutex);
    if (!m_isKeptBeside || m_file.Finish(m_request.durable)) {
        return false;
    }
    m_isKeptBeside = false;
    return true;
}

bool Download::OnCancel(TransferOutcome& outcome) noexcept {
    const std::scoped_lock lock(m_fileMutex);
    if (m_isComplete) {
        return false;
    }
    m_isGivenUp = true;
    if (m_isOpen && m_request.keepsPart && WriteRecord(m_size)) {
        m_file.Keep();
    } else if (m_isOpen) {
        m_file.Abandon();
    }
    outcome.code = ErrorCode::EmptyReply;
    outcome.failure = ExchangeFailure::Cancelled;
    outcome.text = FailureText(ExchangeFailure::Cancelled);
    outcome.localPath = m_request.destination;
    outcome.itemId = m_request.itemId;
    return true;
}

bool Download::WriteRecord(std::uint64_t kept) {
    if (!m_record || m_file.IsDirect()) {
        return false;
    }
    PartRecord record = *m_record;
    record.kept = kept;
    return !m_file.WriteRecord(record.Text());
}

} // namespace transfers

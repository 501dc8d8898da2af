#include "transfers/Upload.h"

#include "brevint/ErrorCodes.h"
#include "brevint/JobStatus.h"
#include "brevint/OverwriteFileResponse.h"
#include "brevint/PollOverwriteStatusResponse.h"
#include "brevint/PollUploadStatusResponse.h"
#include "brevint/UploadFileResponse.h"
#include "calls/FailureText.h"
#include "calls/Names.h"
#include "requests/OverwriteFileRequestInfo.h"
#include "requests/PollFileStatusRequestInfo.h"
#include "requests/UploadFileRequestInfo.h"
#include "support/ItemName.h"
#include "transfers/WidePath.h"

#include <memory>
#include <utility>

namespace transfers {

using calls::DescribeRefusal;
using calls::FailureText;
using calls::NoReplyText;
using calls::Refusal;
using calls::ServiceReply;

namespace {

using Kind = UploadRequest::Kind;

std::unique_ptr<IRequestInfo> Describe(const std::wstring& url, const UploadRequest& request) {
    const std::wstring path = WidePath(request.path);
    if (request.kind == Kind::NewFile) {
        return std::make_unique<CUploadFileRequestInfo>(url, request.target, path,
                                                        UploadBody::Streamed);
    }
    return std::make_unique<COverwriteFileRequestInfo>(url, request.target, path,
                                                       UploadBody::Streamed);
}

std::unique_ptr<CJobResponse> MakeResponse(Kind kind) {
    if (kind == Kind::NewFile) {
        return std::make_unique<CUploadFileResponse>();
    }
    return std::make_unique<COverwriteFileResponse>();
}

std::unique_ptr<CPollStatusResponse> MakePollResponse(Kind kind) {
    if (kind == Kind::NewFile) {
        return std::make_unique<CPollUploadStatusResponse>();
    }
    return std::make_unique<CPollOverwriteStatusResponse>();
}

double NoFileCode(Kind kind) {
    return kind == Kind::NewFile ? ErrorCode::UploadNoFile : ErrorCode::OverwriteNoFile;
}

} // namespace

Upload::Upload(std::shared_ptr<const Service> service, UploadRequest request,
               TransferListener listener)
    : Transfer(std::move(service), std::move(listener)), m_request(std::move(request)),
      m_source(m_request.path) {
    m_result.localPath = m_request.path;
    m_source.SetOnProgress([this](std::uint64_t done) { Report(done); });
}

Transfer::Step Upload::Run() {
    if (!m_jobId.empty()) {
        return Step::Poll; // a poll had found that the session was over
    }
    if (!CheckIdentifier(m_request.target, m_request.kind == Kind::NewFile
                                               ? ErrorCode::UploadInvalidId
                                               : ErrorCode::OverwriteInvalidId)) {
        return EndAsFailed();
    }
    if (!IsFormName(WidePath(m_request.path.filename()))) {
        Fail(NoFileCode(m_request.kind), L"The file's name has a character that cannot be sent.");
        return EndAsFailed();
    }
    return RunAttempts();
}

Upload::Result Upload::Attempt() {
    const Result result = Send();
    if (result == Result::Later && m_source.IsUsedUp()) {
        m_result.mayHaveHappened = true;
        return Fail(ErrorCode::EmptyReply, NoReplyText(m_result.failure, m_head) +
                                               L" Whether the service has the file is unknown.");
    }
    return result;
}

Upload::Result Upload::Send() {
    if (!m_source.Open()) {
        return Fail(NoFileCode(m_request.kind), L"The local file cannot be read.");
    }
    SetTotal(m_source.FileSize());
    const TransferSettings& settings = TheService().Settings();
    const auto exchange = TheService().MakeExchange({settings.stallLimit, settings.replyLimit});
    const calls::StopSignal::Guard guard(Stop(), *exchange);
    BeginExchange();
    m_result.failure = exchange->Send(*Describe(TheService().Url(), m_request), {}, &m_source);
    switch (m_result.failure) {
    case ExchangeFailure::None: break;
    case ExchangeFailure::Cancelled: return Result::Cancelled;
    case ExchangeFailure::CertificateNotTrusted:
        return Fail(ErrorCode::EmptyReply, FailureText(m_result.failure));
    case ExchangeFailure::SourceFailed:
        return Fail(NoFileCode(m_request.kind),
                    m_source.WouldEndForm()
                        ? L"The file holds the line that ends the form in which files are sent."
                        : FailureText(m_result.failure));
    default: return Result::Later;
    }
    m_head = exchange->Head();
    m_result.status = m_head.status;
    return AcceptReply(*exchange);
}

Upload::Result Upload::AcceptReply(IStreamingExchange& exchange) {
    std::vector<char> body;
    m_result.failure = TheService().ReadAll(exchange, body);
    if (m_result.failure == ExchangeFailure::Cancelled) {
        return Result::Cancelled;
    }
    const std::unique_ptr<CJobResponse> response = MakeResponse(m_request.kind);
    response->SetServerResponse(body, m_head.status);
    m_result.serverMessage = response->GetServerErrorMessage();
    if (m_head.status / 100 == 2 && response->GetSucceeded() &&
        calls::IsIdentifier(response->GetJobId())) {
        const std::scoped_lock lock(m_jobMutex);
        m_jobId = response->GetJobId();
        m_result.jobId = m_jobId;
        m_result.jobGoesOn = true;
        return Result::Complete;
    }
    if (m_result.failure != ExchangeFailure::None) {
        return Result::Later;
    }
    return JudgeReply(*response);
}

Transfer::Step Upload::Poll() {
    m_pollPause = {};
    BeginExchange();
    const ServiceReply reply = TheService().Call(
        CPollFileStatusRequestInfo(TheService().Url(), m_jobId), Stop(), TheService().Timeouts());
    m_head = reply.head;
    m_result.status = m_head.status;
    m_result.failure = reply.failure;
    if (m_result.failure == ExchangeFailure::Cancelled) {
        return Step::Ended;
    }
    const std::unique_ptr<CPollStatusResponse> response = MakePollResponse(m_request.kind);
    response->SetServerResponse(reply.body, reply.head.status);
    m_result.serverMessage = response->GetServerErrorMessage();
    const bool isWhole =
        response->GetStatus() != JobStatus::Finished || calls::IsIdentifier(response->GetItemId());
    const bool isAnswer = reply.head.status == 200 && m_result.failure == ExchangeFailure::None &&
                          isWhole && (response->GetSucceeded() || !m_result.serverMessage.empty());
    if (!isAnswer) {
        switch (m_result.failure == ExchangeFailure::None ? JudgeReply(*response) : Result::Later) {
        case Result::SignIn: return Step::SignIn;
        case Result::Failed: return EndAsFailed();
        case Result::Again: return Step::Poll;
        default: return PollAgain();
        }
    }
    m_attempts.Restart();
    switch (response->GetStatus()) {
    case JobStatus::Unfinished: return Step::Poll;
    case JobStatus::Finished: {
        m_result.code = ErrorCode::Success;
        m_result.itemId = response->GetItemId();
        m_result.verified = true;
        m_result.jobGoesOn = false;
        End(TransferState::Finished, std::move(m_result));
        return Step::Ended;
    }
    default: {
        const Refusal refusal = DescribeRefusal(reply.head, *response);
        Fail(refusal.code, refusal.text);
        m_result.jobGoesOn = false;
        return EndAsFailed();
    }
    }
}

Transfer::Step Upload::PollAgain() {
    if (const auto pause = m_attempts.NextPause(m_head.retryAfter)) {
        m_pollPause = *pause;
        return Step::Poll;
    }
    Fail(ErrorCode::EmptyReply, L"The service cannot be asked how its job stands. " +
                                    NoReplyText(m_result.failure, m_head));
    return EndAsFailed();
}

bool Upload::OnCancel(TransferOutcome& outcome) noexcept {
    const std::scoped_lock lock(m_jobMutex);
    outcome.code = ErrorCode::EmptyReply;
    outcome.failure = ExchangeFailure::Cancelled;
    outcome.text = FailureText(ExchangeFailure::Cancelled);
    outcome.localPath = m_request.path;
    outcome.jobId = m_jobId;
    outcome.jobGoesOn = !m_jobId.empty();
    const TransferProgress progress = GetProgress();
    outcome.mayHaveHappened = m_jobId.empty() && progress.done == progress.total;
    return true;
}

} // namespace transfers

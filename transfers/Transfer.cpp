#include "transfers/Transfer.h"

#include "brevint/BaseResponse.h"
#include "brevint/ErrorCodes.h"
#include "calls/Calls.h"
#include "calls/FailureText.h"
#include "calls/Names.h"
#include "support/PlatformCookies.h"
#include "transfers/TransferQueue.h"

#include <new>
#include <utility>

namespace transfers {

using calls::Refusal;
using calls::Verdict;

Transfer::Transfer(std::shared_ptr<const Service> service, TransferListener listener)
    : m_attempts(service->Settings()), m_service(std::move(service)), m_gate(std::move(listener)) {}

TransferProgress Transfer::GetProgress() const noexcept {
    TransferProgress progress;
    progress.state = m_state;
    progress.done = m_done;
    progress.total = m_total;
    progress.resumed = m_resumed;
    progress.bytesPerSecond = m_speed.BytesPerSecond();
    progress.secondsLeft = m_speed.SecondsFor(progress.done, progress.total);
    return progress;
}

bool Transfer::Wait(std::chrono::milliseconds time) const {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(
        lock, time, [this] { return m_isSettled || m_state == TransferState::NeedsSignIn; });
}

const TransferOutcome* Transfer::GetOutcome() const {
    const std::scoped_lock lock(m_mutex);
    return IsFinal(m_state) ? &m_outcome : nullptr;
}

void Transfer::Cancel() {
    const std::shared_ptr<Transfer> keep = shared_from_this();
    if (IsFinal(m_state)) {
        return;
    }
    m_stop.Raise();
    TransferOutcome outcome;
    if (OnCancel(outcome)) {
        End(TransferState::Cancelled, std::move(outcome));
    } else {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return IsFinal(m_state); });
    }
    if (const auto queue = Queue()) {
        queue->GiveUp(*this);
    }
}

std::shared_ptr<TransferQueue> Transfer::Queue() const {
    const std::scoped_lock lock(m_mutex);
    return m_queue.lock();
}

void Transfer::LetGo() {
    const std::shared_ptr<Transfer> keep = shared_from_this();
    Cancel();
    m_gate.Close();
}

Transfer::Step Transfer::RunAttempts() {
    for (;;) {
        switch (Attempt()) {
        case Result::Complete: return OnComplete();
        case Result::Cancelled: return Step::Ended;
        case Result::SignIn: return Step::SignIn;
        case Result::Failed: return EndAsFailed();
        case Result::GoesOn:
        case Result::Again: continue;
        case Result::Later: break;
        }
        const auto pause = m_attempts.NextPause(m_head.retryAfter);
        if (!pause) {
            Fail(ErrorCode::EmptyReply, calls::NoReplyText(m_result.failure, m_head));
            m_result.isTemporary = true;
            return EndAsFailed();
        }
        if (!m_stop.Pause(*pause)) {
            return Step::Ended;
        }
    }
}

void Transfer::BeginExchange() {
    m_head = {};
    m_result.status = 0;
    m_result.serverMessage.clear();
    m_cookies = BaseHlpr::GetPlatformCookies(m_service->Url().c_str());
}

Transfer::Result Transfer::JudgeReply(const CBaseResponse& response) {
    switch (m_service->Judge(m_head, response, m_stop, m_service->Timeouts())) {
    case Verdict::TryAgain: return Result::Later;
    case Verdict::SignIn: m_attempts.Restart(); return Result::SignIn;
    case Verdict::Doubtful:
        if (m_cookies != BaseHlpr::GetPlatformCookies(m_service->Url().c_str()) &&
            m_attempts.MayRepeat()) {
            return Result::Again;
        }
        break;
    case Verdict::Refused: break;
    }
    if (m_head.status == 200 && response.GetServerErrorMessage().empty()) {
        return Fail(ErrorCode::ReplyNotXml, L"The reply is none of such a service's.");
    }
    const Refusal refusal = calls::DescribeRefusal(m_head, response);
    return Fail(refusal.code, refusal.text);
}

Transfer::Result Transfer::Fail(double code, std::wstring text) {
    m_result.code = code;
    m_result.text = std::move(text);
    return Result::Failed;
}

bool Transfer::CheckIdentifier(const std::wstring& id, double code) {
    if (calls::IsIdentifier(id)) {
        return true;
    }
    Fail(code, calls::InvalidIdentifier(id).text);
    m_result.kind = calls::FailureKind::Invalid;
    return false;
}

Transfer::Step Transfer::EndAsFailed() {
    End(TransferState::Failed, std::move(m_result));
    return Step::Ended;
}

void Transfer::End(TransferState state, TransferOutcome outcome) {
    {
        const std::scoped_lock lock(m_mutex);
        if (IsFinal(m_state)) {
            return;
        }
        m_outcome = std::move(outcome);
        m_state = state;
        m_changed.notify_all();
    }
    Tell();
    const std::scoped_lock lock(m_mutex);
    m_isSettled = true;
    m_changed.notify_all();
}

Transfer::Step Transfer::RunGuarded() noexcept try { return Run(); } catch (const std::bad_alloc&) {
    return FailForMemory();
}

Transfer::Step Transfer::PollGuarded() noexcept try {
    return Poll();
} catch (const std::bad_alloc&) {
    return FailForMemory();
}

Transfer::Step Transfer::FailForMemory() noexcept {
    TransferOutcome outcome;
    outcome.code = ErrorCode::EmptyReply;
    outcome.failure = ExchangeFailure::Other;
    End(TransferState::Failed, std::move(outcome));
    return Step::Ended;
}

bool Transfer::SetState(TransferState state) {
    const std::scoped_lock lock(m_mutex);
    if (IsFinal(m_state)) {
        return false;
    }
    m_state = state;
    m_changed.notify_all();
    return true;
}

bool Transfer::ChangeState(TransferState state) {
    const bool hasChanged = SetState(state);
    if (hasChanged) {
        Tell();
    }
    return hasChanged;
}

void Transfer::Tell() {
    m_gate.Call(GetProgress());
}

void Transfer::Report(std::uint64_t done) {
    if (done > m_done) {
        m_done = done;
    }
    if (!m_speed.Note(done, TheService().Settings().reportInterval)) {
        return;
    }
    if (m_state == TransferState::Running) {
        Tell();
    }
}

} // namespace transfers

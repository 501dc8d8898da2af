#include "transport/RequestContext.h"

#include "brevint/WebRequest.h"
#include "transport/KeepCodeLoaded.h"
#include "transport/ReplyDelivery.h"

#include <new>
#include <utility>

namespace {

constexpr unsigned kAnyStep = 0;

} // namespace

/// A callback at work: request and response live until it ends. It needs no memory.
class RequestContext::Visit {
public:
    /// Takes the step under way, if it has that number.
    explicit Visit(RequestContext& context, unsigned step = kAnyStep) noexcept
        : m_context(context) {
        const std::scoped_lock lock(context.m_mutex);
        if (context.m_abandoned || (step != kAnyStep && step != context.m_step)) {
            return;
        }
        const bool isUnderWay = context.m_state != State::Idle && context.m_state != State::Done;
        if (isUnderWay) {
            m_ended = std::exchange(context.m_state, State::Idle);
            m_next = std::exchange(context.m_visits, this);
        }
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    ~Visit() {
        if (!*this) {
            return;
        }
        const std::scoped_lock lock(m_context.m_mutex);
        Visit** place = &m_context.m_visits;
        while (*place != this) {
            place = &(*place)->m_next;
        }
        *place = m_next;
        m_context.m_changed.notify_all();
    }

    /// False when there was nothing to take.
    explicit operator bool() const noexcept { return m_ended != State::Idle; }
    /// What has ended.
    State Ended() const noexcept { return m_ended; }
    std::thread::id Thread() const noexcept { return m_thread; }
    const Visit* Next() const noexcept { return m_next; }

private:
    RequestContext& m_context;
    const std::thread::id m_thread = std::this_thread::get_id();
    State m_ended = State::Idle;
    Visit* m_next = nullptr;
};

void RequestContext::HoldForPlatform() {
    KeepCodeLoaded();
    m_heldByPlatform = shared_from_this();
}

void RequestContext::LetGoByPlatform() noexcept {
    const std::shared_ptr<RequestContext> last = std::move(m_heldByPlatform);
    // Nobody writes there any more, and the request may live on for long.
    readBuffer = {};
    data = {};
}

void RequestContext::OwnHandle(HINTERNET handle) noexcept {
    const std::scoped_lock lock(m_mutex);
    m_handle = handle;
}

HINTERNET RequestContext::Handle() const noexcept {
    const std::scoped_lock lock(m_mutex);
    return m_handle;
}

DWORD RequestContext::QueryNumber(DWORD what) const noexcept {
    DWORD number = 0;
    DWORD size = sizeof(number);
    // Under the lock, so that the handle is still the request's.
    const std::scoped_lock lock(m_mutex);
    if (!HttpQueryInfoW(m_handle, what | HTTP_QUERY_FLAG_NUMBER, &number, &size, nullptr)) {
        return 0;
    }
    return number;
}

DWORD RequestContext::QueryLength(DWORD what) const noexcept {
    DWORD length = 0;
    const std::scoped_lock lock(m_mutex);
    HttpQueryInfoA(m_handle, what, nullptr, &length, nullptr);
    return length;
}

DWORD RequestContext::Status() const noexcept {
    const DWORD status = QueryNumber(HTTP_QUERY_STATUS_CODE);
    const std::scoped_lock lock(m_mutex);
    return m_handle ? status : m_status;
}

void RequestContext::CloseRequest() noexcept {
    std::unique_lock lock(m_mutex);
    // A connection that is closed meanwhile would close the handle a second time, when its number
    // may be another thread's.
    m_changed.wait(lock, [this] { return !m_closing; });
    const HINTERNET handle = std::exchange(m_handle, nullptr);
    if (!handle) {
        return;
    }
    m_closing = true;
    lock.unlock();
    InternetCloseHandle(handle);
    lock.lock();
    m_closing = false;
    m_changed.notify_all();
}

unsigned RequestContext::Begin(State step) noexcept {
    const std::scoped_lock lock(m_mutex);
    m_state = step;
    return ++m_step;
}

unsigned RequestContext::BeginRead(State step, DWORD length) noexcept {
    if (readBuffer.Size() != length && !readBuffer.Allocate(length)) {
        Fail(request->GetRequestStatus());
        return 0;
    }
    bytesRead = 0;
    return Begin(step);
}

void RequestContext::OnRequestComplete(bool succeeded) noexcept {
    const std::shared_ptr<RequestContext> keep = shared_from_this();
    const Visit visit(*this);
    if (!visit) {
        return;
    }
    if (visit.Ended() == State::Sending) {
        request->GetRequestedDataAsync(this);
        return;
    }
    const bool isFullChunk = visit.Ended() == State::ReadingChunk && bytesRead == readBuffer.Size();
    if (!succeeded || !AddRead(visit.Ended())) {
        Fail(request->GetRequestStatus());
    } else if (isFullChunk) {
        request->GetRequestedDataAsync(this);
    } else {
        Complete();
    }
}

void RequestContext::OnSendFailed(unsigned step) noexcept {
    if (const Visit visit(*this, step); visit) {
        Fail(0);
    }
}

void RequestContext::OnReadAtOnce(unsigned step, bool succeeded) noexcept {
    const Visit visit(*this, step);
    if (!visit) {
        return;
    }
    if (succeeded && AddRead(visit.Ended())) {
        Complete();
    } else {
        Fail(request->GetRequestStatus());
    }
}

void RequestContext::Abandon() noexcept {
    bool isOver = false;
    {
        std::unique_lock lock(m_mutex);
        m_abandoned = true;
        ++m_waiting;
        m_changed.wait(lock, [this] { return !HasVisit(false); });
        --m_waiting;
        isOver = m_state == State::Done;
    }
    if (!isOver) {
        CloseRequest();
    }
}

bool RequestContext::IsWaitedFor() const noexcept {
    const std::scoped_lock lock(m_mutex);
    return m_waiting != 0 && HasVisit(true);
}

bool RequestContext::HasVisit(bool ofThisThread) const noexcept {
    const std::thread::id self = std::this_thread::get_id();
    const Visit* visit = m_visits;
    while (visit && (visit->Thread() == self) != ofThisThread) {
        visit = visit->Next();
    }
    return visit != nullptr;
}

bool RequestContext::AddRead(State step) noexcept {
    if (step == State::ReadingLast && bytesRead != readBuffer.Size()) {
        return false;
    }
    try {
        readBuffer.MoveTo(bytesRead, data);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

void RequestContext::Complete() noexcept {
    readBuffer = {};
    const std::vector<char> bytes = std::exchange(data, {});
    const unsigned long status = request->GetRequestStatus(); // which may be overridden
    GiveBack();
    Deliver(bytes, status);
}

void RequestContext::Fail(unsigned long status) noexcept {
    GiveBack();
    Deliver({}, status);
}

void RequestContext::GiveBack() noexcept {
    if (!kClosesWhatIsOver || QueryLength(HTTP_QUERY_LOCATION) != 0) {
        return;
    }
    const DWORD status = Status();
    {
        const std::scoped_lock lock(m_mutex);
        m_status = status;
    }
    CloseRequest();
}

void RequestContext::Deliver(const std::vector<char>& bytes, unsigned long status) noexcept {
    IResponse* waiting = nullptr;
    {
        const std::scoped_lock lock(m_mutex);
        m_state = State::Done;
        waiting = std::exchange(response, nullptr);
    }
    // Request and response may be gone when this returns: the application has its answer.
    if (waiting) {
        DeliverReply(*waiting, bytes, status);
    }
}

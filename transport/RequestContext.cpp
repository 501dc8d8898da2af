#include "transport/RequestContext.h"

#include "brevint/WebRequest.h"
#include "platform/Resources.h"
#include "transport/ReplyDelivery.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

/// The platform's last callback can come when the application has long deleted everything and freed
/// the library: from its first asynchronous exchange on, the library's code stays loaded.
bool KeepCodeLoaded() {
    HMODULE module = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN |
                                  GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                              reinterpret_cast<LPCWSTR>(&KeepCodeLoaded), &module) != FALSE;
}

} // namespace

void RequestContext::HoldForPlatform() {
    [[maybe_unused]] static const bool kept = KeepCodeLoaded();
    m_heldByPlatform = shared_from_this();
}

void RequestContext::LetGoByPlatform() {
    const std::shared_ptr<RequestContext> last = std::move(m_heldByPlatform);
}

void RequestContext::OnRequestComplete(bool succeeded) {
    const std::shared_ptr<RequestContext> keep = shared_from_this();
    if (!Enter()) {
        return;
    }
    const bool isFullChunk = state == State::ReadingChunk && bytesRead == readBuffer.Size();
    if (state == State::Sending) {
        request->GetRequestedDataAsync(this);
    } else if (!succeeded || !TakeRead()) {
        Fail(request->GetRequestStatus());
    } else if (isFullChunk) {
        request->GetRequestedDataAsync(this);
    } else {
        Complete();
    }
    Leave();
}

void RequestContext::Abandon() {
    const std::thread::id self = std::this_thread::get_id();
    std::unique_lock lock(m_mutex);
    m_abandoned = true;
    m_left.wait(lock, [&] {
        return std::all_of(m_inside.begin(), m_inside.end(),
                           [&](std::thread::id id) { return id == self; });
    });
}

bool RequestContext::PrepareRead(DWORD length, State next) noexcept {
    if (readBuffer.Size() != length && !readBuffer.Allocate(length)) {
        return false;
    }
    bytesRead = 0;
    state = next;
    return true;
}

bool RequestContext::TakeRead() noexcept {
    if (state == State::ReadingLast && bytesRead != readBuffer.Size()) {
        return false;
    }
    try {
        readBuffer.Take(bytesRead, data);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

void RequestContext::Complete() noexcept {
    Deliver(std::exchange(data, {}), request->GetRequestStatus());
}

void RequestContext::Fail(unsigned long status) noexcept {
    Deliver({}, status);
}

bool RequestContext::Enter() {
    const std::scoped_lock lock(m_mutex);
    if (m_abandoned) {
        return false;
    }
    m_inside.push_back(std::this_thread::get_id());
    return true;
}

void RequestContext::Leave() {
    const std::scoped_lock lock(m_mutex);
    m_inside.erase(std::find(m_inside.begin(), m_inside.end(), std::this_thread::get_id()));
    m_left.notify_all();
}

void RequestContext::Deliver(const std::vector<char>& bytes, unsigned long status) noexcept {
    // Request and response may be gone when this returns: the application has its answer.
    if (IResponse* const waiting = std::exchange(response, nullptr)) {
        DeliverReply(*waiting, bytes, status);
    }
}

#include "platform/linux/handles/RequestHandle.h"

#include "platform/linux/system/Thread.h"

#include <new>
#include <utility>

namespace platform {

RequestHandle::RequestHandle(const HandleSettings& settings, DWORD_PTR context, HttpRequest request)
    : InternetHandle(settings, context), m_asynchronous(settings.asynchronous),
      m_request(std::move(request)) {}

DWORD RequestHandle::Send(const HeaderList& headers, const char* body, std::size_t size) {
    return Start([this, headers, body, size] { return DoSend(headers, body, size); });
}

DWORD RequestHandle::Read(char* buffer, DWORD size, DWORD* read) {
    *read = 0;
    return Start([this, buffer, size, read] { return DoRead(buffer, size, read); });
}

DWORD RequestHandle::BeginSend(const HeaderList& headers, std::uint64_t bodySize,
                               std::string_view firstPart) {
    if (m_asynchronous) {
        return ERROR_INVALID_OPERATION;
    }
    return Start([&] {
        HttpRequest request = Prepare(headers);
        request.bodySize = bodySize;
        request.streamed = true;
        request.followRedirects = false;
        m_exchange = std::make_unique<Exchange>(std::move(request), m_cancellation);
        DWORD error = m_exchange->BeginSend();
        if (error == ERROR_SUCCESS && !firstPart.empty()) {
            error = m_exchange->Write(firstPart.data(), firstPart.size());
        }
        return error;
    });
}

DWORD RequestHandle::Write(const char* data, DWORD size) {
    return Start([&]() -> DWORD {
        return m_exchange == nullptr ? ERROR_INTERNET_INCORRECT_HANDLE_STATE
                                     : m_exchange->Write(data, size);
    });
}

DWORD RequestHandle::EndSend() {
    return Start([&]() -> DWORD {
        if (m_exchange == nullptr) {
            return ERROR_INTERNET_INCORRECT_HANDLE_STATE;
        }
        const DWORD error = m_exchange->EndSend();
        if (ReplyHead reply = m_exchange->TakeReply(); reply.status != 0) {
            KeepReply(std::move(reply)); // a second end has none
        }
        return error;
    });
}

std::shared_ptr<const ReplyHead> RequestHandle::GetReply() const {
    const std::lock_guard lock(m_mutex);
    return m_reply;
}

void RequestHandle::Close() noexcept {
    bool unused = false;
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        unused = m_users == 0;
    }
    m_cancellation.Raise();
    if (unused) {
        FinishClosing();
    }
}

DWORD RequestHandle::Start(Operation operation) {
    if (m_asynchronous) {
        return Post(std::move(operation));
    }
    if (!Enter()) {
        return ERROR_INVALID_HANDLE;
    }
    const DWORD error = CarryOut(operation);
    Leave();
    return error;
}

DWORD RequestHandle::Post(Operation operation) {
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return ERROR_INVALID_HANDLE;
    }
    m_operations.push_back(std::move(operation));
    if (!m_working) {
        try {
            StartThread([self = shared_from_this()] { self->Work(); });
        } catch (...) {
            m_operations.pop_back();
            throw;
        }
        m_working = true;
        ++m_users;
    }
    return ERROR_IO_PENDING;
}

DWORD RequestHandle::CarryOut(const Operation& operation) noexcept try {
    const std::lock_guard lock(m_driving);
    return m_cancellation.Raised() ? ERROR_INTERNET_OPERATION_CANCELLED : operation();
} catch (const std::bad_alloc&) {
    return ERROR_NOT_ENOUGH_MEMORY;
}

void RequestHandle::Work() noexcept {
    for (;;) {
        Operation operation;
        {
            const std::lock_guard lock(m_mutex);
            if (m_operations.empty()) {
                m_working = false;
                break;
            }
            operation = std::move(m_operations.front());
            m_operations.pop_front();
        }
        const DWORD error = CarryOut(operation);
        INTERNET_ASYNC_RESULT result{error == ERROR_SUCCESS ? DWORD_PTR{1} : DWORD_PTR{0}, error};
        Notify(INTERNET_STATUS_REQUEST_COMPLETE, &result, sizeof result);
    }
    Leave();
}

bool RequestHandle::Enter() noexcept {
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return false;
    }
    ++m_users;
    return true;
}

void RequestHandle::Leave() noexcept {
    bool last = false;
    {
        const std::lock_guard lock(m_mutex);
        last = --m_users == 0 && m_closed;
    }
    if (last) {
        FinishClosing();
    }
}

// Nobody else uses the request any more, or will again.
void RequestHandle::FinishClosing() noexcept {
    m_exchange.reset();
    NotifyClosed();
}

HttpRequest RequestHandle::Prepare(const HeaderList& headers) {
    m_exchange.reset();
    KeepReply({});
    HttpRequest request = m_request;
    for (const Header& header : headers) {
        request.headers.Set(header.name, header.value);
    }
    request.timeouts = Settings().timeouts;
    return request;
}

void RequestHandle::KeepReply(ReplyHead reply) {
    auto kept = std::make_shared<const ReplyHead>(std::move(reply));
    const std::lock_guard lock(m_mutex);
    m_reply = std::move(kept);
}

DWORD RequestHandle::DoSend(const HeaderList& headers, const char* body, std::size_t size) {
    HttpRequest request = Prepare(headers);
    request.body = body;
    request.bodySize = size;
    auto exchange = std::make_unique<Exchange>(std::move(request), m_cancellation);
    const DWORD error = exchange->Send();
    KeepReply(exchange->TakeReply());
    if (error == ERROR_SUCCESS) {
        m_exchange = std::move(exchange);
    }
    return error;
}

DWORD RequestHandle::DoRead(char* buffer, DWORD size, DWORD* read) {
    if (m_exchange == nullptr) {
        return ERROR_SUCCESS;
    }
    std::size_t count = 0;
    const DWORD error = m_exchange->Read(buffer, size, count);
    *read = static_cast<DWORD>(count);
    return error;
}

} // namespace platform

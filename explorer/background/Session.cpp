#include "explorer/background/Session.h"

#include "explorer/system/Text.h"

#include <algorithm>

namespace brevint::explorer {

namespace {

/// What of an address tells services apart: neither the case of scheme and host, nor slashes at
/// the end.
std::string AddressKey(const std::string& url) {
    const std::size_t scheme = url.find("://");
    const std::size_t host = scheme == std::string::npos ? 0 : scheme + 3;
    const std::size_t path = std::min(url.find('/', host), url.size());
    const std::string folded = Utf8(FoldCase(Wide(url.substr(0, path)))) + url.substr(path);
    return folded.substr(0, folded.find_last_not_of('/') + 1);
}

} // namespace

Session::Session(Worker& worker, Executor executor, Listener listener)
    : m_worker(worker), m_executor(std::move(executor)), m_listener(std::move(listener)) {}

std::shared_ptr<Client> Session::ClientFor(const std::string& url, bool isItsUser,
                                           Error& error) const {
    if (m_client && isItsUser && IsAt(url)) {
        return m_client;
    }
    auto client = std::make_shared<Client>(url, ClientSettings{.executor = m_executor}, &error);
    return error ? nullptr : client;
}

bool Session::IsAt(const std::string& url) const {
    return AddressKey(url) == AddressKey(m_url);
}

void Session::Open(const std::string& url, const std::shared_ptr<Client>& client) {
    if (client != m_client) {
        Close();
        m_url = url;
        m_client = client;
    }
}

void Session::Close() {
    ++m_tenure;
    m_calls.clear();
    m_waiting.clear();
    m_client.reset();
    m_listener.onCallsChanged();
}

void Session::Drop(CallId id) {
    m_calls.erase(id);
    std::erase_if(m_waiting, [id](const Waiting& waiting) { return waiting.id == id; });
    m_listener.onCallsChanged();
}

void Session::Stop(CallId id) {
    if (const auto call = m_calls.find(id); call != m_calls.end()) {
        call->second.task.Stop();
    }
}

void Session::StopAll() {
    for (auto& [id, pending] : m_calls) {
        pending.task.Stop();
    }
}

std::chrono::seconds Session::LongestWait() const {
    Clock::duration longest{};
    for (const auto& [id, pending] : m_calls) {
        longest = std::max(longest, Clock::now() - pending.begin);
    }
    return std::chrono::duration_cast<std::chrono::seconds>(longest);
}

void Session::ResumeCalls() {
    for (const Waiting& waiting : std::exchange(m_waiting, {})) {
        waiting.resume();
    }
}

void Session::FailCalls() {
    // One failure may drop others, or make new calls, which stay.
    const CallId last = m_lastCall;
    while (!m_waiting.empty() && m_waiting.front().id <= last) {
        const Waiting waiting = std::move(m_waiting.front());
        m_waiting.erase(m_waiting.begin());
        waiting.fail();
    }
}

void Session::GiveUp() {
    ++m_tenure;
    const CallId last = m_lastCall;
    while (!m_calls.empty() && m_calls.begin()->first <= last) {
        const auto call = m_calls.extract(m_calls.begin());
        call.mapped().cancel();
    }
    FailCalls();
    m_listener.onCallsChanged();
}

} // namespace brevint::explorer

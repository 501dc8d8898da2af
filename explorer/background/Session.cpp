#include "explorer/background/Session.h"

#include <algorithm>

namespace brevint::explorer {

Session::Session(Worker& worker, Executor executor, Listener listener)
    : m_worker(worker), m_executor(std::move(executor)), m_listener(std::move(listener)) {}

std::shared_ptr<Client> Session::ClientFor(const std::string& url, Error& error) const {
    if (m_client && url == m_url) {
        return m_client;
    }
    auto client = std::make_shared<Client>(url, ClientSettings{.executor = m_executor}, &error);
    return error ? nullptr : client;
}

void Session::Open(const std::string& url, const std::shared_ptr<Client>& client) {
    if (client != m_client) {
        Close();
        m_url = url;
        m_client = client;
    }
}

void Session::Close() {
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
    for (const Waiting& waiting : std::exchange(m_waiting, {})) {
        waiting.fail();
    }
}

} // namespace brevint::explorer

#include "tests/support/ScriptedServer.h"

#include "base/Ascii.h"

#include <utility>

#include <boost/asio/awaitable.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/read_until.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <sstream>
#include <thread>

namespace brevint::test {

namespace asio = boost::asio;
using asio::use_awaitable;
using tcp = asio::ip::tcp;

namespace {

/// Guards the steps of all scripts.
std::mutex& StepsMutex() {
    static std::mutex mutex;
    return mutex;
}

/// Fills in everything that the request's head tells.
void ParseHead(ScriptedServer::Request& request) {
    std::istringstream lines(request.head);
    std::string line;
    lines >> request.method >> request.target;
    std::getline(lines, line);
    while (std::getline(lines, line) && line != "\r") {
        const auto colon = line.find(':');
        request.headers.emplace_back(
            line.substr(0, colon),
            base::Trim<char>(std::string_view(line).substr(colon + 1), " \t\r"));
    }
}

/// What finds the headers of a name, in any letter case.
auto Named(std::string_view name) {
    return [name](const auto& header) {
        return base::EqualsIgnoreCase(header.first, name);
    };
}

} // namespace

/// Everything of Boost.Asio, which happens on one thread. A connection lives in the frame of its
/// coroutine, which goes with the context.
struct ScriptedServer::Network {
    explicit Network(ScriptedServer& itsOwner) : owner(itsOwner) {
        asio::co_spawn(io, Accept(), asio::detached);
        thread = std::thread([this] { io.run(); });
    }
    ~Network() {
        io.stop();
        thread.join();
    }

    /// What is waited for at a gate: a timer that is due once the gate is open.
    asio::steady_timer& Gate(const std::string& name) {
        return gates.try_emplace(name, io, asio::steady_timer::time_point::max()).first->second;
    }

    asio::awaitable<void> Accept();
    asio::awaitable<void> Serve(tcp::socket socket, std::size_t number);

    ScriptedServer& owner;
    asio::io_context io;
    tcp::acceptor acceptor{io, tcp::endpoint(asio::ip::address_v4::loopback(), 0)};
    std::map<std::string, asio::steady_timer> gates;
    std::thread thread;
};

asio::awaitable<void> ScriptedServer::Network::Accept() {
    for (;;) {
        auto socket = co_await acceptor.async_accept(use_awaitable);
        socket.set_option(tcp::no_delay(true));
        std::unique_lock lock(owner.m_mutex);
        const std::size_t number = ++owner.m_connectionCount;
        lock.unlock();
        asio::co_spawn(io, Serve(std::move(socket), number), asio::detached);
    }
}

/// Does the steps for a new connection, then reads requests and does those for each. An error ends
/// it.
asio::awaitable<void> ScriptedServer::Network::Serve(tcp::socket socket, std::size_t number) {
    std::string input;
    const auto take = [&input](std::size_t size) {
        auto bytes = input.substr(0, size);
        input.erase(0, size);
        return bytes;
    };
    for (const Script* script = &owner.m_greeting;;) {
        for (const auto& [kind, text] : script->Steps()) {
            boost::system::error_code ignored;
            switch (kind) {
            case Script::Kind::Send:
                co_await asio::async_write(socket, asio::buffer(text), use_awaitable);
                break;
            case Script::Kind::Wait: {
                std::unique_lock lock(owner.m_mutex);
                owner.m_reached.insert(text);
                owner.m_changed.notify_all();
                lock.unlock();
                co_await Gate(text).async_wait(asio::redirect_error(use_awaitable, ignored));
                break;
            }
            case Script::Kind::Close:
                // Reads on after the FIN, because closing with unread bytes would send an RST.
                static_cast<void>(socket.shutdown(tcp::socket::shutdown_send, ignored));
                for (;;) {
                    input.resize(64 * 1024);
                    co_await socket.async_read_some(asio::buffer(input), use_awaitable);
                }
            case Script::Kind::Reset:
                static_cast<void>(socket.set_option(asio::socket_base::linger(true, 0), ignored));
                co_return;
            }
        }
        Request request;
        request.connection = number;
        request.head = take(co_await asio::async_read_until(socket, asio::dynamic_buffer(input),
                                                            "\r\n\r\n", use_awaitable));
        ParseHead(request);
        const std::size_t length =
            std::strtoull(request.Header("Content-Length").c_str(), nullptr, 10);
        boost::system::error_code cut;
        co_await asio::async_read(socket, asio::dynamic_buffer(input),
                                  asio::transfer_exactly(length - std::min(length, input.size())),
                                  asio::redirect_error(use_awaitable, cut));
        request.body = take(length);
        script = owner.Arrived(std::move(request));
    }
}

/// Notes a request and finds the script for it, the most exact name first.
const ScriptedServer::Script* ScriptedServer::Arrived(Request request) {
    static const Script noScript = std::move(Script().Reply(599));
    const std::lock_guard lock(m_mutex);
    const auto path = request.target.substr(0, request.target.find('?'));
    const std::string names[] = {request.method + ' ' + request.target, request.target,
                                 request.method + ' ' + path, path, "*"};
    m_requests.push_back(std::move(request));
    for (const auto& name : names) {
        if (const auto found = m_turns.find(name); found != m_turns.end()) {
            auto& [scripts, used] = found->second;
            return &scripts[std::min(used++, scripts.size() - 1)];
        }
    }
    return &noScript;
}

std::string ScriptedServer::Request::Header(std::string_view name) const {
    const auto found = std::ranges::find_if(headers, Named(name));
    return found == headers.end() ? std::string() : found->second;
}

std::size_t ScriptedServer::Request::HeaderCount(std::string_view name) const {
    return static_cast<std::size_t>(std::ranges::count_if(headers, Named(name)));
}

ScriptedServer::Script& ScriptedServer::Script::Add(Kind kind, std::string_view text) {
    const std::lock_guard lock(StepsMutex());
    m_steps.emplace_back(kind, text);
    return *this;
}

ScriptedServer::Script::StepList ScriptedServer::Script::Steps() const {
    const std::lock_guard lock(StepsMutex());
    return m_steps;
}

ScriptedServer::Script& ScriptedServer::Script::Reply(int status, Headers headers,
                                                      std::string_view body) {
    if (std::ranges::none_of(headers, Named("Content-Length"))) {
        headers.emplace_back("Content-Length", std::to_string(body.size()));
    }
    Head(status, headers);
    const std::lock_guard lock(StepsMutex());
    m_steps.back().second += body;
    return *this;
}

ScriptedServer::Script&
ScriptedServer::Script::ReplyChunked(int status, Headers headers,
                                     const std::vector<std::string>& chunks) {
    headers.emplace_back("Transfer-Encoding", "chunked");
    Head(status, headers);
    for (const auto& chunk : chunks) {
        SendChunk(chunk);
    }
    return SendChunk({});
}

ScriptedServer::Script& ScriptedServer::Script::Head(int status, const Headers& headers) {
    auto text = "HTTP/1.1 " + std::to_string(status) + " Scripted\r\n";
    for (const auto& [name, value] : headers) {
        text += name + ": " + value + "\r\n";
    }
    return Send(text + "\r\n");
}

ScriptedServer::Script& ScriptedServer::Script::SendChunk(std::string_view data) {
    std::ostringstream text;
    text << std::hex << data.size() << "\r\n" << data << "\r\n";
    return Send(text.str());
}

ScriptedServer::ScriptedServer() : m_network(std::make_unique<Network>(*this)) {
    m_port = m_network->acceptor.local_endpoint().port();
}

ScriptedServer::~ScriptedServer() = default;

ScriptedServer::Script& ScriptedServer::On(std::string_view target) {
    const std::lock_guard lock(m_mutex);
    return m_turns[std::string(target)].scripts.emplace_back();
}

std::wstring ScriptedServer::Url(std::string_view target, std::string_view host) const {
    const auto url =
        "http://" + std::string(host) + ':' + std::to_string(m_port) + std::string(target);
    return {url.begin(), url.end()};
}

void ScriptedServer::Open(std::string_view gate) {
    asio::post(m_network->io, [network = m_network.get(), name = std::string(gate)] {
        network->Gate(name).expires_at(asio::steady_timer::time_point());
    });
}

bool ScriptedServer::AwaitArrivalAt(std::string_view gate) const {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::minutes(1),
                              [&] { return m_reached.contains(gate); });
}

std::vector<ScriptedServer::Request> ScriptedServer::Requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

std::vector<ScriptedServer::Request> ScriptedServer::RequestsFor(std::string_view target) const {
    auto requests = Requests();
    std::erase_if(requests, [target](const Request& request) { return request.target != target; });
    return requests;
}

std::size_t ScriptedServer::ConnectionCount() const {
    const std::lock_guard lock(m_mutex);
    return m_connectionCount;
}

std::string ScriptedServer::Pattern(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>((i * 31 + i / 256 * 7 + i / 65536 * 13) & 0xFF);
    }
    return bytes;
}

} // namespace brevint::test

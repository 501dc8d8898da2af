#include "tests/support/ScriptedServer.h"

#include "base/Ascii.h"

#include <utility>

#include <boost/asio.hpp>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <map>
#include <sstream>
#include <thread>

namespace brevint::test {

namespace asio = boost::asio;
using asio::use_awaitable;
using tcp = asio::ip::tcp;

namespace {

constexpr std::chrono::minutes kLongestWait{1};

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

std::string HeadText(int status, const ScriptedServer::Headers& headers) {
    auto text = "HTTP/1.1 " + std::to_string(status) + " Scripted\r\n";
    for (const auto& [name, value] : headers) {
        text += name + ": " + value + "\r\n";
    }
    return text + "\r\n";
}

/// What finds the headers of a name, in any letter case.
auto Named(std::string_view name) {
    return [name](const auto& header) {
        return base::EqualsIgnoreCase(header.first, name);
    };
}

} // namespace

/// The server's state and its thread, on which everything of Boost.Asio happens. A connection lives
/// in the frame of its coroutine, which goes with the context.
class ScriptedServer::Impl {
public:
    Impl() {
        asio::co_spawn(io, Accept(), asio::detached);
        m_thread = std::thread([this] { io.run(); });
    }

    ~Impl() {
        io.stop();
        m_thread.join();
    }

    /// One place where connections wait. Its timer is due once the gate is open.
    struct Gate {
        explicit Gate(asio::io_context& context)
            : timer(context, asio::steady_timer::time_point::max()) {}
        bool reached = false;
        asio::steady_timer timer; // server's thread only
    };

    /// To be called with the mutex held.
    Gate& GateOf(std::string_view name) {
        return gates.try_emplace(std::string(name), io).first->second;
    }

    template <class Condition>
    bool Await(Condition condition) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, kLongestWait, condition);
    }

    struct Turn {
        std::deque<Script> scripts;
        std::size_t used = 0;
    };

    asio::io_context io;
    tcp::acceptor acceptor{io, tcp::endpoint(asio::ip::address_v4::loopback(), 0)};
    const std::uint16_t port = acceptor.local_endpoint().port();

    std::mutex mutex; // guards what follows
    std::condition_variable changed;
    Script greeting{mutex};
    std::map<std::string, Turn> turns;
    std::map<std::string, Gate> gates;
    std::vector<Request> requests;
    std::size_t connectionCount = 0;

private:
    using Step = Script::Step;

    asio::awaitable<void> Accept();
    asio::awaitable<void> Serve(tcp::socket socket, std::size_t number);
    std::vector<Step> Greeting();
    std::vector<Step> Arrived(Request request);
    asio::steady_timer& Reached(const std::string& gate);

    std::thread m_thread;
};

asio::awaitable<void> ScriptedServer::Impl::Accept() {
    for (;;) {
        auto socket = co_await acceptor.async_accept(use_awaitable);
        socket.set_option(tcp::no_delay(true));
        std::unique_lock lock(mutex);
        const std::size_t number = ++connectionCount;
        lock.unlock();
        asio::co_spawn(io, Serve(std::move(socket), number), asio::detached);
    }
}

/// Does the steps for a new connection, then reads requests and does those for each. An error ends
/// it.
asio::awaitable<void> ScriptedServer::Impl::Serve(tcp::socket socket, std::size_t number) {
    std::string input;
    const auto take = [&input](std::size_t size) {
        auto bytes = input.substr(0, size);
        input.erase(0, size);
        return bytes;
    };
    for (auto steps = Greeting();;) {
        for (const auto& step : steps) {
            boost::system::error_code ignored;
            switch (step.kind) {
            case Step::Kind::send:
                co_await asio::async_write(socket, asio::buffer(step.text), use_awaitable);
                break;
            case Step::Kind::take:
                co_await asio::async_read(socket, asio::dynamic_buffer(input),
                                          asio::transfer_exactly(step.size), use_awaitable);
                break;
            case Step::Kind::wait:
                co_await Reached(step.text).async_wait(
                    asio::redirect_error(use_awaitable, ignored));
                break;
            case Step::Kind::close:
                // Reads on after the FIN, because closing with unread bytes would send an RST.
                socket.shutdown(tcp::socket::shutdown_send, ignored);
                for (;;) {
                    input.resize(64 * 1024);
                    co_await socket.async_read_some(asio::buffer(input), use_awaitable);
                }
            case Step::Kind::reset:
                socket.set_option(asio::socket_base::linger(true, 0), ignored);
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
        co_await asio::async_read(socket, asio::dynamic_buffer(input),
                                  asio::transfer_exactly(length - std::min(length, input.size())),
                                  use_awaitable);
        request.body = take(length);
        steps = Arrived(std::move(request));
    }
}

std::vector<ScriptedServer::Script::Step> ScriptedServer::Impl::Greeting() {
    const std::lock_guard lock(mutex);
    return greeting.m_steps;
}

/// Notes a request and finds the script for it, the most exact name first.
std::vector<ScriptedServer::Script::Step> ScriptedServer::Impl::Arrived(Request request) {
    const std::lock_guard lock(mutex);
    const auto path = request.target.substr(0, request.target.find('?'));
    const std::string names[] = {request.method + ' ' + request.target, request.target,
                                 request.method + ' ' + path, path, "*"};
    requests.push_back(std::move(request));
    changed.notify_all();
    for (const auto& name : names) {
        if (const auto found = turns.find(name); found != turns.end()) {
            auto& [scripts, used] = found->second;
            return scripts[std::min(used++, scripts.size() - 1)].m_steps;
        }
    }
    return {{Step::Kind::send, HeadText(599, {{"Content-Length", "0"}})}};
}

asio::steady_timer& ScriptedServer::Impl::Reached(const std::string& gate) {
    const std::lock_guard lock(mutex);
    GateOf(gate).reached = true;
    changed.notify_all();
    return GateOf(gate).timer;
}

std::string ScriptedServer::Request::Header(std::string_view name) const {
    const auto found = std::find_if(headers.begin(), headers.end(), Named(name));
    return found == headers.end() ? std::string() : found->second;
}

std::size_t ScriptedServer::Request::HeaderCount(std::string_view name) const {
    return static_cast<std::size_t>(std::count_if(headers.begin(), headers.end(), Named(name)));
}

ScriptedServer::Script& ScriptedServer::Script::Add(Step step) {
    const std::lock_guard lock(m_mutex);
    m_steps.push_back(std::move(step));
    return *this;
}

ScriptedServer::Script& ScriptedServer::Script::Reply(int status, const Headers& headers,
                                                      std::string_view body) {
    auto all = headers;
    if (std::none_of(all.begin(), all.end(), Named("Content-Length"))) {
        all.emplace_back("Content-Length", std::to_string(body.size()));
    }
    return Send(HeadText(status, all) + std::string(body));
}

ScriptedServer::Script&
ScriptedServer::Script::ReplyChunked(int status, const Headers& headers,
                                     const std::vector<std::string>& chunks) {
    auto all = headers;
    all.emplace_back("Transfer-Encoding", "chunked");
    Head(status, all);
    for (const auto& chunk : chunks) {
        SendChunk(chunk);
    }
    return SendChunk({});
}

ScriptedServer::Script& ScriptedServer::Script::Head(int status, const Headers& headers) {
    return Send(HeadText(status, headers));
}

ScriptedServer::Script& ScriptedServer::Script::Send(std::string_view bytes) {
    return Add({Step::Kind::send, std::string(bytes)});
}

ScriptedServer::Script& ScriptedServer::Script::SendPattern(std::size_t count) {
    return Send(Pattern(count));
}

ScriptedServer::Script& ScriptedServer::Script::SendChunk(std::string_view data) {
    std::ostringstream text;
    text << std::hex << data.size() << "\r\n" << data << "\r\n";
    return Send(text.str());
}

ScriptedServer::Script& ScriptedServer::Script::Take(std::size_t count) {
    return Add({Step::Kind::take, {}, count});
}

ScriptedServer::Script& ScriptedServer::Script::Wait(std::string_view gate) {
    return Add({Step::Kind::wait, std::string(gate)});
}

ScriptedServer::Script& ScriptedServer::Script::Close() {
    return Add({Step::Kind::close});
}

ScriptedServer::Script& ScriptedServer::Script::Reset() {
    return Add({Step::Kind::reset});
}

ScriptedServer::ScriptedServer() : m_impl(std::make_unique<Impl>()) {}

ScriptedServer::~ScriptedServer() = default;

ScriptedServer::Script& ScriptedServer::On(std::string_view target) {
    const std::lock_guard lock(m_impl->mutex);
    return m_impl->turns[std::string(target)].scripts.emplace_back(m_impl->mutex);
}

ScriptedServer::Script& ScriptedServer::OnConnect() {
    return m_impl->greeting;
}

std::uint16_t ScriptedServer::Port() const {
    return m_impl->port;
}

std::wstring ScriptedServer::Url(std::string_view target, std::string_view host) const {
    const auto url =
        "http://" + std::string(host) + ':' + std::to_string(Port()) + std::string(target);
    return std::wstring(url.begin(), url.end());
}

void ScriptedServer::Open(std::string_view gate) {
    const std::lock_guard lock(m_impl->mutex);
    asio::post(m_impl->io, [&timer = m_impl->GateOf(gate).timer] {
        timer.expires_at(asio::steady_timer::time_point());
    });
}

bool ScriptedServer::AwaitArrivalAt(std::string_view gate) const {
    return m_impl->Await([&] { return m_impl->GateOf(gate).reached; });
}

bool ScriptedServer::AwaitRequests(std::size_t count) const {
    return m_impl->Await([&] { return m_impl->requests.size() >= count; });
}

std::vector<ScriptedServer::Request> ScriptedServer::Requests() const {
    const std::lock_guard lock(m_impl->mutex);
    return m_impl->requests;
}

std::vector<ScriptedServer::Request> ScriptedServer::RequestsFor(std::string_view target) const {
    auto requests = Requests();
    std::erase_if(requests, [target](const Request& request) { return request.target != target; });
    return requests;
}

std::size_t ScriptedServer::ConnectionCount() const {
    const std::lock_guard lock(m_impl->mutex);
    return m_impl->connectionCount;
}

std::string ScriptedServer::Pattern(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<char>((i * 31 + i / 256 * 7 + i / 65536 * 13) & 0xFF);
    }
    return bytes;
}

} // namespace brevint::test

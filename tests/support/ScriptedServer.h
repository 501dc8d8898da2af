#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brevint::test {

/// A real HTTP server on 127.0.0.1 that does to its connections exactly what a test scripts, and
/// afterwards tells what it was sent.
///
///     ScriptedServer server;
///     server.On("/a").Reply(200, {{"X-Mine", "y"}}, "body");
///     server.On("POST /job").Reply(500);                       // only for this verb
///     server.On("/half").Head(200, {{"Content-Length", "1000"}}).SendPattern(300).Reset();
///     server.On("/slow").Wait("go").Reply(200, {}, "done");    // test: server.Open("go")
///
/// A script must be complete when the request comes that it answers. Every operation may be called
/// from any thread. The destructor ends all connections, whatever they are doing, and joins the
/// server's thread.
class ScriptedServer {
public:
    using Headers = std::vector<std::pair<std::string, std::string>>;

    /// One request as it came over the wire.
    struct Request {
        std::string method;
        std::string target;
        std::string head; ///< request line and headers, with every line end and the empty line
        Headers headers;  ///< in the order sent, names as spelled
        std::string body;
        std::size_t connection = 0; ///< the number of the connection that it came over

        /// The value of the first header of that name (in any letter case), or empty.
        std::string Header(std::string_view name) const;
        /// How often a header of that name (in any letter case) was sent.
        std::size_t HeaderCount(std::string_view name) const;
    };

    /// What the server does when a request has arrived, step after step. After the last step the
    /// connection waits for its next request, unless a step has ended it.
    class Script {
    public:
        /// A whole reply. Content-Length is added unless `headers` names it.
        Script& Reply(int status, Headers headers = {}, std::string_view body = {});
        /// A whole chunked reply with these chunks.
        Script& ReplyChunked(int status, Headers headers, const std::vector<std::string>& chunks);

        /// Status line, headers and empty line, with nothing added.
        Script& Head(int status, const Headers& headers = {});
        /// Bytes as they are.
        Script& Send(std::string_view bytes) { return Add(Kind::Send, bytes); }
        /// The first `count` bytes of the test pattern; see Pattern.
        Script& SendPattern(std::size_t count) { return Send(Pattern(count)); }
        /// One chunk of a chunked body; empty data makes the last chunk, which ends the body.
        Script& SendChunk(std::string_view data);

        /// Holds the connection until the test opens that gate with ScriptedServer::Open.
        Script& Wait(std::string_view gate) { return Add(Kind::Wait, gate); }
        /// Ends the connection in an orderly way (FIN).
        Script& Close() { return Add(Kind::Close); }
        /// Breaks the connection (RST).
        Script& Reset() { return Add(Kind::Reset); }

    private:
        friend class ScriptedServer;
        enum class Kind { Send, Wait, Close, Reset };
        using StepList = std::vector<std::pair<Kind, std::string>>;
        Script& Add(Kind kind, std::string_view text = {});
        StepList Steps() const;
        StepList m_steps; ///< Written by the test and read by the server's thread.
    };

    ScriptedServer();
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    /// Starts a script for requests with this target. The target is a path, with or without its
    /// query, in front of which a verb may stand; "*" is every target that has no script. Several
    /// scripts for one target answer its requests in turn, and the last one stays.
    ///
    /// A request without a script is answered with status 599. One whose connection ends in its
    /// midst is noted with what came of its body.
    Script& On(std::string_view target);
    /// Starts the script for connections: what the server does to each before it reads a request.
    Script& OnConnect() { return m_greeting; }

    std::uint16_t Port() const { return m_port; }
    /// The address of `target` on this server, under the given name of this machine.
    std::wstring Url(std::string_view target, std::string_view host = "127.0.0.1") const;

    /// Lets every connection pass that waits at this gate now or later.
    void Open(std::string_view gate);
    /// Blocks until a connection has done all its steps before that gate. False after a minute.
    bool AwaitArrivalAt(std::string_view gate) const;

    /// The requests received so far, in order of arrival.
    std::vector<Request> Requests() const;
    /// Those of them whose target (path and query) is this one.
    std::vector<Request> RequestsFor(std::string_view target) const;
    /// How many TCP connections were accepted so far.
    std::size_t ConnectionCount() const;

    /// The first `size` bytes of the test pattern: all byte values occur, and neighbouring blocks
    /// of any usual size differ.
    static std::string Pattern(std::size_t size);

private:
    struct Network;
    /// The scripts of one target.
    struct Turn {
        std::deque<Script> scripts;
        std::size_t used = 0;
    };
    const Script* Arrived(Request request);

    mutable std::mutex m_mutex; // guards what follows
    mutable std::condition_variable m_changed;
    std::map<std::string, Turn> m_turns;
    std::set<std::string, std::less<>> m_reached; ///< gates
    std::vector<Request> m_requests;
    std::size_t m_connectionCount = 0;

    Script m_greeting;
    std::uint16_t m_port = 0;
    std::unique_ptr<Network> m_network;
};

/// An address as a header names it.
inline std::string Narrow(const std::wstring& ascii) {
    return {ascii.begin(), ascii.end()};
}

} // namespace brevint::test

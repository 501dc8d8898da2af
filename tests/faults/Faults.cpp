#include "tests/faults/Faults.h"

#include "tests/library/Helpers.h"

#include <sstream>
#include <utility>

namespace brevint::test {

namespace {

using enum Fault::End;
using enum Fault::Shows;
using Where = Fault::Where;

const std::string kSize = "Content-Length: {size}\n\n";
const std::string kSizeAndBody = kSize + "{body}";
const std::string kWhole = "{head}" + kSizeAndBody;
const std::string kChunked = "{head}Transfer-Encoding: chunked\n\n";
const std::string kOk = "HTTP/1.1 200 OK\nContent-Length: 5\n\nstray";
const std::string kMoved = "HTTP/1.1 302 Found\nContent-Length: 5\n";

constexpr int kMostMoves = 30; // who follows more of them would do so forever

/// Content-Length has this value, and the connection ends behind the body.
std::string Length(const std::string& value) {
    return "{head}Content-Length: " + value + "\n\n{body}";
}

std::string Redirect(const std::string& location) {
    return kMoved + "Location: " + location + "\n\nmoved";
}

const Fault kFaults[] = {
    {"refuses the connection", "", Closes, Everywhere, Where::Refused},
    {"has no address", "", Closes, Everywhere, Where::Unknown},
    {"closes the connection at once", "", Closes, Everywhere, Where::Connect},
    {"resets the connection at once", "", Resets, Everywhere, Where::Connect},
    {"closes before the reply", "", Closes},
    {"resets before the reply", "", Resets},
    {"closes within the status line", "HTTP/1.1 2", Closes},
    {"resets within the status line", "HTTP/1.1 2", Resets},
    {"closes within the head", "{head}Content-Len", Closes},
    {"resets within the head", "{head}Content-Len", Resets},
    {"closes after the head", "{head}" + kSize, Closes},
    {"resets after the head", "{head}" + kSize, Resets},
    {"closes within the body", "{head}" + kSize + "{half}", Closes},
    {"resets within the body", "{head}" + kSize + "{half}", Resets},
    {"announces too much", Length("{more}"), Closes},
    {"announces too little", Length("{less}"), Waits, Nowhere},
    {"announces 4,294,967,295 bytes", Length("4294967295"), Closes},
    {"announces 4,294,967,301 bytes", Length("4294967301"), Closes},
    {"announces 10^30 bytes", Length("1" + std::string(30, '0')), Closes},
    {"announces -1 bytes", Length("-1"), Closes},
    {"announces \"many\" bytes", Length("many"), Closes},
    {"announces \"1x\" bytes", Length("1x"), Closes, OnLinux},
    {"announces the length twice", Length("{size}\nContent-Length: {size}")},
    {"announces two lengths, the first too short", Length("{less}\nContent-Length: {size}"), Closes,
     OnLinux},
    {"announces two lengths, the second too short", Length("{size}\nContent-Length: {less}"),
     Closes},
    {"announces two lengths in one line", Length("{less}, {size}"), Closes, OnLinux},
    {"never ends the chunks", kChunked + "{hex}\n{body}\n", Closes},
    {"closes within a chunk", kChunked + "{hex}\n{half}", Closes, OnLinux},
    {"resets within a chunk", kChunked + "{hex}\n{half}", Resets, OnLinux},
    {"makes a chunk longer than its size", kChunked + "1\n{body}\n0\n\n", Closes, OnLinux},
    {"makes a chunk's size no number", kChunked + "many\n{body}\n0\n\n", Closes, OnLinux},
    {"makes a chunk's size negative", kChunked + "-{hex}\n{body}\n0\n\n", Closes},
    {"makes a chunk's size 2^68", kChunked + "100000000000000000\n{body}\n0\n\n", Closes},
    {"sends chunks and a length too short",
     "{head}Content-Length: {less}\nTransfer-Encoding: chunked\n\n{hex}\n{body}\n0\n\n", Waits,
     OnLinux},
    {"sends more than memory holds, of announced size",
     "{head}Content-Length: 1200000\n\n" + std::string(1'200'000, 'x')},
    {"sends more than memory holds, to the end", "{head}\n" + std::string(1'200'000, 'x'), Closes,
     OnLinux},
    {"dribbles", kWhole, Waits, Everywhere, Where::Request, 1},
    {"has a garbage status line", "garbage\n\n{body}", Closes, OnLinux},
    {"has a status that is no number", "HTTP/1.1 fine\n" + kSizeAndBody, Closes},
    {"has status 200000", "HTTP/1.1 200000 OK\n" + kSizeAndBody, Closes},
    {"switches protocols", "HTTP/1.1 101 Switching\nUpgrade: x\n\n{body}", Closes},
    {"sends 100 interim replies first", Numbered(100, "HTTP/1.1 100 Go on ", "\n\n") + kWhole},
    {"sends a header of a megabyte", "{head}X: " + std::string(1 << 20, 'x') + "\n" + kSizeAndBody,
     Closes},
    {"sends headers of a megabyte",
     "{head}" + Numbered(64, "X-", ": " + std::string(16'300, 'x') + "\n") + kSizeAndBody, Closes},
    {"sends a header without a colon", "{head}nonsense\n" + kSizeAndBody},
    {"sends a NUL in a header", "{head}X: a" + std::string(1, '\0') + "b\n" + kSizeAndBody, Closes},
    {"redirects to itself", Redirect("/again")},
    {"redirects without saying where", kMoved + "\nmoved"},
    {"redirects to nobody", Redirect("{refused}")},
    {"redirects to no address", Redirect("http://")},
    {"redirects to a file", Redirect("file:///etc/passwd")},
    {"redirects to another protocol", Redirect("gopher://127.0.0.1/")},
    {"redirects to a script", Redirect("javascript:alert(1)")},
    {"sends 500 cookies",
     "{head}" + Numbered(500, "Set-Cookie: flood", "=x; Path=/flood\n") + kSizeAndBody, Closes},
    {"sends malformed cookies",
     "{head}Set-Cookie:\nSet-Cookie: =\nSet-Cookie: ;;=;\nSet-Cookie: a\x01=\x02\xFF\n"
     "Set-Cookie: b=1; Domain=.com; Path=\nSet-Cookie: c=1; Path=/c; Expires=never; Max-Age=x\n" +
         kSizeAndBody},
    {"sends a reply before the request", kOk, Waits, Nowhere, Where::Connect},
    {"sends a second reply behind the first", kWhole + kOk},
    {"compresses unasked",
     "{head}Content-Encoding: gzip\nContent-Length: 20\n\n\x1F\x8B\x08" +
         std::string("\0\0\0\0\0\2\3\3\0\0\0\0\0\0\0\0\0", 17),
     Waits, Nowhere},
};

std::string FillIn(std::string text, const Healthy& healthy, const std::string& refused) {
    const std::size_t size = healthy.body.size();
    std::ostringstream hex;
    hex << std::hex << size;
    const std::pair<const char*, std::string> parts[] = {
        {"{head}", "HTTP/1.1 " + healthy.status + "\n" + healthy.headers},
        {"\n", "\r\n"},
        {"{hex}", hex.str()},
        {"{size}", std::to_string(size)},
        {"{more}", std::to_string(size + 9)},
        {"{less}", std::to_string(size - 9)},
        {"{refused}", refused},
        {"{half}", healthy.body.substr(0, size / 2)},
        {"{body}", healthy.body},
    };
    for (const auto& [name, value] : parts) {
        text = Replace(std::move(text), name, value);
    }
    return text;
}

} // namespace

std::string Healthy::Text() const {
    return FillIn(kWhole, *this, "");
}

std::span<const Fault> Faults() {
    return kFaults;
}

void Misbehave(ScriptedServer& server, const Fault& fault, const Healthy& healthy,
               const std::string& refused) {
    const std::string reply = FillIn(fault.reply, healthy, refused);
    const auto script = [&](ScriptedServer::Script& to) {
        for (std::size_t at = 0; at < reply.size(); at += fault.piece) {
            to.Send(std::string_view(reply).substr(at, fault.piece));
        }
        if (fault.end != Waits) {
            fault.end == Closes ? to.Close() : to.Reset();
        }
    };
    if (fault.where == Where::Connect) {
        script(server.OnConnect());
        server.On("*").Send(healthy.Text());
        return;
    }
    const bool moves = fault.reply.starts_with(kMoved);
    for (int i = 0; i < (moves ? kMostMoves : 1); ++i) {
        script(server.On("*"));
    }
    if (moves) {
        server.On("*").Close();
    }
}

} // namespace brevint::test

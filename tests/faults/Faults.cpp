#include "tests/faults/Faults.h"

#include <boost/algorithm/string/replace.hpp>

#include <sstream>

namespace brevint::test {

namespace {

using End = Fault::End;
using Shows = Fault::Shows;
using Where = Fault::Where;

std::string Repeat(int times, const std::string& text) {
    std::string all;
    for (int i = 0; i < times; ++i) {
        all += boost::replace_all_copy(text, "#", std::to_string(i));
    }
    return all;
}

const std::string kSize = "Content-Length: {size}\n\n";
const std::string kWhole = "{head}" + kSize + "{body}";
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
    {"refuses the connection", "", End::closes, Shows::everywhere, Where::refused},
    {"has no address", "", End::closes, Shows::everywhere, Where::unknown},
    {"closes the connection at once", "", End::closes, Shows::everywhere, Where::connect},
    {"resets the connection at once", "", End::resets, Shows::everywhere, Where::connect},
    {"closes before the reply", "", End::closes},
    {"resets before the reply", "", End::resets},
    {"closes within the status line", "HTTP/1.1 2", End::closes},
    {"resets within the status line", "HTTP/1.1 2", End::resets},
    {"closes within the head", "{head}Content-Len", End::closes},
    {"resets within the head", "{head}Content-Len", End::resets},
    {"closes after the head", "{head}" + kSize, End::closes},
    {"resets after the head", "{head}" + kSize, End::resets},
    {"closes within the body", "{head}" + kSize + "{half}", End::closes},
    {"resets within the body", "{head}" + kSize + "{half}", End::resets},
    {"announces too much", Length("{more}"), End::closes},
    {"announces too little", Length("{less}"), End::waits, Shows::nowhere},
    {"announces 4,294,967,295 bytes", Length("4294967295"), End::closes},
    {"announces 4,294,967,301 bytes", Length("4294967301"), End::closes},
    {"announces 10^30 bytes", Length("1" + std::string(30, '0')), End::closes},
    {"announces -1 bytes", Length("-1"), End::closes},
    {"announces \"many\" bytes", Length("many"), End::closes},
    {"announces \"1x\" bytes", Length("1x"), End::closes, Shows::onLinux},
    {"announces the length twice", Length("{size}\nContent-Length: {size}")},
    {"announces two lengths, the first too short", Length("{less}\nContent-Length: {size}"),
     End::closes, Shows::onLinux},
    {"announces two lengths, the second too short", Length("{size}\nContent-Length: {less}"),
     End::closes},
    {"announces two lengths in one line", Length("{less}, {size}"), End::closes, Shows::onLinux},
    {"never ends the chunks", kChunked + "{hex}\n{body}\n", End::closes},
    {"closes within a chunk", kChunked + "{hex}\n{half}", End::closes, Shows::onLinux},
    {"resets within a chunk", kChunked + "{hex}\n{half}", End::resets, Shows::onLinux},
    {"makes a chunk longer than its size", kChunked + "1\n{body}\n0\n\n", End::closes,
     Shows::onLinux},
    {"makes a chunk's size no number", kChunked + "many\n{body}\n0\n\n", End::closes,
     Shows::onLinux},
    {"makes a chunk's size negative", kChunked + "-{hex}\n{body}\n0\n\n", End::closes},
    {"makes a chunk's size 2^68", kChunked + "100000000000000000\n{body}\n0\n\n", End::closes},
    {"sends chunks and a length too short",
     "{head}Content-Length: {less}\nTransfer-Encoding: chunked\n\n{hex}\n{body}\n0\n\n", End::waits,
     Shows::onLinux},
    {"sends more than memory holds, of announced size",
     "{head}Content-Length: 1200000\n\n" + std::string(1'200'000, 'x')},
    {"sends more than memory holds, to the end", "{head}\n" + std::string(1'200'000, 'x'),
     End::closes, Shows::onLinux},
    {"dribbles", kWhole, End::waits, Shows::everywhere, Where::request, 1},
    {"has a garbage status line", "garbage\n\n{body}", End::closes, Shows::onLinux},
    {"has a status that is no number", "HTTP/1.1 fine\n" + kSize + "{body}", End::closes},
    {"has status 200000", "HTTP/1.1 200000 OK\n" + kSize + "{body}", End::closes},
    {"switches protocols", "HTTP/1.1 101 Switching\nUpgrade: x\n\n{body}", End::closes},
    {"sends 100 interim replies first", Repeat(100, "HTTP/1.1 100 Continue\n\n") + kWhole},
    {"sends a header of a megabyte",
     "{head}X: " + std::string(1 << 20, 'x') + "\n" + kSize + "{body}", End::closes},
    {"sends headers of a megabyte",
     "{head}" + Repeat(1 << 6, "X-#: " + std::string(16'300, 'x') + "\n") + kSize + "{body}",
     End::closes},
    {"sends a header without a colon", "{head}nonsense\n" + kSize + "{body}"},
    {"sends a NUL in a header", "{head}X: a" + std::string(1, '\0') + "b\n" + kSize + "{body}",
     End::closes},
    {"redirects to itself", Redirect("/again")},
    {"redirects without saying where", kMoved + "\nmoved"},
    {"redirects to nobody", Redirect("{refused}")},
    {"redirects to no address", Redirect("http://")},
    {"redirects to a file", Redirect("file:///etc/passwd")},
    {"redirects to another protocol", Redirect("gopher://127.0.0.1/")},
    {"redirects to a script", Redirect("javascript:alert(1)")},
    {"sends 500 cookies",
     "{head}" + Repeat(500, "Set-Cookie: flood#=x; Path=/flood\n") + kSize + "{body}", End::closes},
    {"sends malformed cookies",
     "{head}Set-Cookie:\nSet-Cookie: =\nSet-Cookie: ;;=;\nSet-Cookie: a\x01=\x02\xFF\n"
     "Set-Cookie: b=1; Domain=.com; Path=\nSet-Cookie: c=1; Expires=never; Max-Age=x\n" +
         kSize + "{body}"},
    {"sends a reply before the request", kOk, End::waits, Shows::nowhere, Where::connect},
    {"sends a second reply behind the first", kWhole + kOk},
    {"compresses unasked",
     "{head}Content-Encoding: gzip\nContent-Length: 20\n\n\x1F\x8B\x08" +
         std::string("\0\0\0\0\0\2\3\3\0\0\0\0\0\0\0\0\0", 17),
     End::waits, Shows::nowhere},
};

std::string FillIn(const std::string& reply, const Healthy& healthy, const std::string& refused) {
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
    std::string text = reply;
    for (const auto& [name, value] : parts) {
        boost::replace_all(text, name, value);
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
        if (fault.end != End::waits) {
            fault.end == End::closes ? to.Close() : to.Reset();
        }
    };
    if (fault.where == Where::connect) {
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

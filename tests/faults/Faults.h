#pragma once

#include "tests/support/ScriptedServer.h"

#include <span>
#include <string>

namespace brevint::test {

/// One way for a server to misbehave.
struct Fault {
    enum class Where {
        Refused, ///< nobody listens
        Unknown, ///< the name has no address
        Connect, ///< as soon as there is a connection
        Request, ///< when a request has come
    };
    enum class End { Waits, Closes, Resets };
    enum class Shows { Everywhere, OnLinux, Nowhere };

    const char* name; ///< goes on as "the server ..."
    /// What it sends. Line feeds stand for CR LF, and these for parts of the call's healthy reply:
    /// {head} status line and headers, {body}, {half} of the body, {size} of the body in bytes,
    /// {more} and {less} a wrong one, {hex} the size as a chunk has it. {refused} is an address.
    std::string reply;
    End end = End::Waits;
    /// Where it shows that what arrives is not the healthy reply. Elsewhere it passes for that.
    Shows shows = Shows::Everywhere;
    Where where = Where::Request;
    std::size_t piece = 500'000; ///< sends so many bytes at a time
};

/// The whole and healthy reply to a call.
struct Healthy {
    std::string status = "200 OK";
    std::string headers = {}; ///< lines that end in a line feed
    std::string body;

    std::string Text() const;
};

/// All of them.
std::span<const Fault> Faults();

/// Makes the server do that to a call, whose healthy reply is this. `refused` is an address where
/// nobody listens.
void Misbehave(ScriptedServer& server, const Fault& fault, const Healthy& healthy,
               const std::string& refused);

} // namespace brevint::test

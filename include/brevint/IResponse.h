#pragma once

#include "brevint/IReadOnlyResponse.h"

#include <string>
#include <vector>

/// The reply of one call: what the transport fills and what the proxies read.
///
/// An asynchronous request fills its response from a thread of the platform. The order of
/// declaration is part of the binary contract.
class BREVINT_INTERFACE IResponse : public virtual IReadOnlyResponse {
public:
    ~IResponse() override = default;

    /// The reply's bytes as received; valid while the response lives.
    virtual const std::vector<char>& GetServerResponse() const = 0;
    /// The reply as text.
    virtual std::wstring GetServerResponseAsString() const = 0;
    /// Takes a reply (or a further part of one, which is appended) and judges it.
    /// `status` is the HTTP status, 0 when there was none.
    virtual void SetServerResponse(const std::vector<char>& bytes, unsigned long status) = 0;
    /// The message that the server sent with a failure, in its own words; empty when none came.
    virtual std::wstring GetServerErrorMessage() const = 0;
    /// HTTP status of the reply.
    virtual unsigned long GetStatusCode() const = 0;
    /// Judges the reply held: sets the error code and the typed results.
    virtual void ParseServerResponse() = 0;
    /// Sets the error code that belongs to a message of the server.
    virtual void ProcessErrorMessage(const wchar_t* message) = 0;
};

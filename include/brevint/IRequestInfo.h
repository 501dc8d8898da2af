#pragma once

#include "brevint/AcceptType.h"
#include "brevint/Export.h"
#include "brevint/WebRequestType.h"

#include <string>
#include <vector>

/// Description of one service call: where it goes, how, and with which body.
///
/// A request copies everything out of its description before the send returns, so a description
/// may be destroyed right after it, for asynchronous sends too. The order of declaration is part
/// of the binary contract.
class BREVINT_INTERFACE IRequestInfo {
public:
    virtual ~IRequestInfo() = default;

    /// Complete URL; empty when none could be formed, in which case the exchange fails.
    virtual std::wstring GetRequestUrl() const = 0;
    /// HTTP verb.
    virtual WebRequestType GetRequestType() const = 0;
    /// Appends the accepted media types to `types`.
    virtual void GetAcceptTypes(std::vector<AcceptType>& types) const = 0;
    /// Extra header text; may be empty.
    virtual std::wstring GetHeaders() const = 0;
    /// Flags for IRequest::SetRequestFlags.
    virtual int GetRequestFlags() const = 0;
    /// Body as text; read only when GetUploadData is empty.
    virtual std::wstring GetUploadString() const = 0;
    /// Body as bytes; the reference is valid while the description lives.
    virtual const std::vector<char>& GetUploadData() const = 0;
};

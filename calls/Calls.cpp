#include "calls/Calls.h"

#include "brevint/CreateFolderResponse.h"
#include "brevint/DownloadFileResponse.h"
#include "brevint/ErrorCodes.h"
#include "brevint/GetFolderContentsResponse.h"
#include "brevint/IRequestInfo.h"
#include "brevint/IdentityResponse.h"
#include "brevint/JobStatus.h"
#include "brevint/PollOverwriteStatusResponse.h"
#include "brevint/PollUploadStatusResponse.h"
#include "calls/Names.h"
#include "calls/Page.h"
#include "requests/CreateFolderRequestInfo.h"
#include "requests/DownloadFileRequestInfo.h"
#include "requests/GetFolderContentsRequestInfo.h"
#include "requests/IdentityRequestInfo.h"
#include "requests/PollFileStatusRequestInfo.h"
#include "requests/SignOutRequestInfo.h"
#include "responses/FolderListing.h"
#include "support/ItemName.h"
#include "support/RootElement.h"
#include "support/Utf8.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace calls {

namespace {

bool MeansNotSignedIn(unsigned long status) {
    return IsRedirect(status) || status == 401 || status == 403;
}

Failure NotTheService(unsigned long status) {
    Failure failure;
    failure.kind = FailureKind::NotTheService;
    failure.code = ErrorCode::ReplyNotXml;
    failure.status = status;
    failure.text = L"The reply is none of such a service's.";
    return failure;
}

/// A status of something between us and the service, which may have had the request all the same.
bool IsOfGateway(unsigned long status) {
    constexpr unsigned long kBadGateway = 502;
    constexpr unsigned long kGatewayTimeout = 504;
    return status == kBadGateway || status == kGatewayTimeout;
}

/// Sends, and reads the reply. A failure is one of the connection.
Failure Exchange(const CallContext& at, const IRequestInfo& info, ServiceReply& reply) {
    reply = at.service.Call(info, at.stop, at.timeouts);
    if (reply.failure == ExchangeFailure::None) {
        return {};
    }
    Failure failure = NoReply(reply.failure);
    const bool wasNotSent = reply.failure == ExchangeFailure::NameNotResolved ||
                            reply.failure == ExchangeFailure::Refused ||
                            reply.failure == ExchangeFailure::CertificateNotTrusted;
    failure.mayHaveHappened = !wasNotSent && info.GetRequestType() != WebRequestTypeGet;
    return failure;
}

bool IsReplyOfService(const ServiceReply& reply) {
    return HasRootElement({reply.body.data(), reply.body.size()}, "ResponseData");
}

Failure NotOne(FailureKind kind, const wchar_t* beginning, std::string_view name,
               const std::string& folder) {
    Failure failure;
    failure.kind = kind;
    failure.text = beginning + Utf8::ToWide(name) + L"\" in the folder \"" +
                   Utf8::ToWide(folder.empty() ? "/" : folder) + L"\".";
    return failure;
}

/// A reply that is no success, whose document `response` has read.
Failure Refusal(const CallContext& at, const StreamHead& head, const CBaseResponse& response) {
    Failure failure = RefusedBy(head, response);
    switch (at.service.Judge(head, response, at.stop, at.timeouts)) {
    case Verdict::SignIn: return NotSignedIn(head.status);
    case Verdict::TryAgain: failure.kind = FailureKind::Unavailable; break;
    case Verdict::Doubtful:
    case Verdict::Refused: break;
    }
    return failure;
}

/// A listing whose items can be taken as they came.
struct ListingReply final : CGetFolderContentsResponse {
    FolderListing Take() { return std::move(*m_listing); }
};

} // namespace

Failure Ask(const CallContext& at, const IRequestInfo& info, CBaseResponse& response) {
    ServiceReply reply;
    if (Failure failure = Exchange(at, info, reply)) {
        return failure;
    }
    response.SetServerResponse(reply.body, reply.head.status);
    const bool isReply = IsReplyOfService(reply);
    if (IsSuccess(reply.head.status) && response.GetSucceeded() && isReply) {
        return {};
    }
    const unsigned long status = reply.head.status;
    Failure failure =
        IsSuccess(status) && !isReply ? NotTheService(status) : Refusal(at, reply.head, response);
    failure.mayHaveHappened =
        info.GetRequestType() != WebRequestTypeGet && (IsSuccess(status) || IsOfGateway(status));
    return failure;
}

Failure NotSignedIn(unsigned long status) {
    Failure failure;
    failure.kind = FailureKind::NotSignedIn;
    failure.code = ErrorCode::AuthorizationFailed;
    failure.status = status;
    failure.text = L"Nobody is signed in, or the session has ended.";
    return failure;
}

Failure InvalidIdentifier(const std::wstring& text) {
    return Invalid(L"\"" + text + L"\" is no identifier.");
}

Failure InvalidName(const std::wstring& text) {
    return Invalid(L"\"" + text + L"\" cannot be the name of an item.");
}

Failure AskIdentity(const CallContext& at, CIdentityResponse& identity) {
    const CIdentityRequestInfo info(at.service.Url());
    ServiceReply reply;
    if (Failure failure = Exchange(at, info, reply)) {
        return failure;
    }
    const unsigned long status = reply.head.status;
    identity.SetServerResponse(reply.body, status);
    if (IsSuccess(status) && identity.GetSucceeded()) {
        return {};
    }
    return MeansNotSignedIn(status) ? NotSignedIn(status)
           : IsSuccess(status)      ? NotTheService(status)
                                    : RefusedBy(reply.head, identity);
}

Failure ListFolder(const CallContext& at, const std::wstring& folderId, FolderListing& listing) {
    if (!IsIdentifier(folderId)) {
        return InvalidIdentifier(folderId);
    }
    ListingReply response;
    Failure failure = Ask(at, CGetFolderContentsRequestInfo(at.service.Url(), folderId), response);
    listing = response.Take();
    return failure;
}

Failure Find(const CallContext& at, std::wstring folderId, std::string_view path,
             FolderListing& listing) {
    std::string folder;
    bool isFound = false;
    for (;;) {
        path.remove_prefix(std::min(path.find_first_not_of('/'), path.size()));
        if (path.empty()) {
            return isFound ? Failure() : Invalid(L"The path names nothing.");
        }
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(name.size());
        if (isFound && !IsIdentifier(folderId)) {
            return NotTheService(0);
        }
        if (Failure failure = ListFolder(at, folderId, listing)) {
            return failure;
        }
        std::optional<std::size_t> index;
        for (std::size_t i = 0; i < listing.Count(); ++i) {
            if (listing.At(i).name == name) {
                if (index) {
                    return NotOne(FailureKind::Refused, L"There are several \"", name, folder);
                }
                index = i;
            }
        }
        if (!index) {
            return NotOne(FailureKind::NotFound, L"There is no \"", name, folder);
        }
        listing.KeepOnly(*index);
        isFound = true;
        folderId = Utf8::ToWide(listing.At(0).id);
        folder.append("/").append(name);
    }
}

Failure CreateFolder(const CallContext& at, const std::wstring& parentId, const std::wstring& name,
                     std::wstring& folderId) {
    if (!IsIdentifier(parentId)) {
        return InvalidIdentifier(parentId);
    }
    if (!IsItemName(name)) {
        return InvalidName(name);
    }
    CCreateFolderResponse response;
    Failure failure = Ask(
        at, CCreateFolderRequestInfo(at.service.Url(), parentId, EscapeForJson(name)), response);
    folderId = response.GetFolderId();
    if (!failure && !IsIdentifier(folderId)) {
        failure = NotTheService(response.GetStatusCode());
        failure.mayHaveHappened = true;
    }
    return failure;
}

Failure ReadFile(const CallContext& at, const std::wstring& itemId, std::size_t mostBytes,
                 std::vector<char>& content) {
    if (!IsIdentifier(itemId)) {
        return InvalidIdentifier(itemId);
    }
    const auto exchange = at.service.MakeExchange(at.timeouts);
    const StopSignal::Guard guard(at.stop, *exchange);
    ExchangeFailure connection =
        exchange->Send(CDownloadFileRequestInfo(at.service.Url(), itemId), {}, nullptr);
    if (connection != ExchangeFailure::None) {
        return NoReply(connection);
    }
    const StreamHead& head = exchange->Head();
    // One byte more shows that there is more.
    const std::size_t limit = std::max(mostBytes + 1, mostBytes);
    connection = IsSuccess(head.status) ? Service::ReadUpTo(*exchange, limit, content)
                                        : at.service.ReadAll(*exchange, content);
    if (connection != ExchangeFailure::None) {
        return NoReply(connection);
    }
    if (!IsSuccess(head.status)) {
        CDownloadFileResponse response;
        response.SetServerResponse(content, head.status);
        return Refusal(at, head, response);
    }
    if (IsPageType(head.contentType) ||
        (head.contentType.empty() && BeginsAsPage({content.data(), content.size()}))) {
        return NotTheService(head.status);
    }
    if (content.size() > mostBytes) {
        Failure failure;
        failure.kind = FailureKind::Refused;
        failure.status = head.status;
        failure.text = L"The file has more than " + std::to_wstring(mostBytes) + L" bytes.";
        return failure;
    }
    return {};
}

Failure AskJob(const CallContext& at, const std::wstring& jobId, JobKind kind, Job& job) {
    if (!IsIdentifier(jobId)) {
        return InvalidIdentifier(jobId);
    }
    std::unique_ptr<CPollStatusResponse> response;
    if (kind == JobKind::Upload) {
        response = std::make_unique<CPollUploadStatusResponse>();
    } else {
        response = std::make_unique<CPollOverwriteStatusResponse>();
    }
    Failure failure = Ask(at, CPollFileStatusRequestInfo(at.service.Url(), jobId), *response);
    job.isFinished = response->GetStatus() == JobStatus::Finished;
    job.itemId = job.isFinished ? response->GetItemId() : L"";
    if (!failure && job.isFinished && !IsIdentifier(job.itemId)) {
        failure = NotTheService(response->GetStatusCode());
    }
    return failure;
}

Failure SignOut(const CallContext& at) {
    ServiceReply reply;
    if (Failure failure = Exchange(at, CSignOutRequestInfo(at.service.Url()), reply)) {
        return failure;
    }
    CIdentityResponse identity;
    Failure asked = AskIdentity(at, identity);
    if (asked.kind == FailureKind::NotSignedIn) {
        return {};
    }
    if (asked) {
        return asked;
    }
    Failure failure = RefusedBy(reply.head, identity);
    failure.kind = FailureKind::Refused;
    failure.text = L"The service has not ended the session.";
    return failure;
}

} // namespace calls

#pragma once

#include "calls/BoundedCall.h"
#include "calls/Failure.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class CBaseResponse;
class CIdentityResponse;
class FolderListing;
class IRequestInfo;

namespace calls {

/// Carries a call out and reads its reply into `response`. A success is one that the response says
/// it is, whose document is the service's, and whose HTTP status says so too.
Failure Ask(const CallContext& at, const IRequestInfo& info, CBaseResponse& response);

/// The failure of a text that is no identifier.
Failure InvalidIdentifier(const std::wstring& text);

/// The failure of a text that cannot be the name of an item.
Failure InvalidName(const std::wstring& text);

/// The failure of a call without a session.
Failure NotSignedIn(unsigned long status = 0);

/// Asks who is signed in.
Failure AskIdentity(const CallContext& at, CIdentityResponse& identity);

/// Lists a folder.
Failure ListFolder(const CallContext& at, const std::wstring& folderId, FolderListing& listing);

/// Finds the item with that path below a folder; `listing` has it alone.
Failure Find(const CallContext& at, std::wstring folderId, std::string_view path,
             FolderListing& listing);

/// Makes a folder, and tells its identifier.
Failure CreateFolder(const CallContext& at, const std::wstring& parentId, const std::wstring& name,
                     std::wstring& folderId);

/// Reads the content of a file of no more than so many bytes.
Failure ReadFile(const CallContext& at, const std::wstring& itemId, std::size_t mostBytes,
                 std::vector<char>& content);

/// Which call a job comes from; it decides how its failures are read.
enum class JobKind { Upload, Overwrite };

/// How a job of the service stands.
struct Job {
    bool isFinished = false;
    std::wstring itemId; ///< Of the item made or changed, once it is finished.
};

/// Asks how a job stands. One that has failed is a failure.
Failure AskJob(const CallContext& at, const std::wstring& jobId, JobKind kind, Job& job);

/// Ends the session at the service. That it has ended is verified.
Failure SignOut(const CallContext& at);

} // namespace calls

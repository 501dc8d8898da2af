#pragma once

#include "requests/ServiceRequestInfo.h"

/// Where the body of an upload comes from.
enum class UploadBody {
    InMemory, ///< The description holds it.
    Streamed, ///< Whoever sends it reads the file, see MakeMultipartFrame.
};

/// Sends a local file as a multipart/form-data body with one part named "file".
///
/// Unless it is streamed, the file is read whole at construction. A source that is not a readable
/// regular file, or whose body could not be carried or held, leaves the body empty: the service
/// then refuses the call.
class CBaseFileUploadRequestInfo : public CServiceRequestInfo {
public:
    /// The Content-Type line that belongs to the body, with its line end.
    std::wstring GetHeaders() const override;

protected:
    CBaseFileUploadRequestInfo(const Method& method, const std::wstring& baseUrl,
                               const std::wstring& path, const std::wstring& filePath,
                               UploadBody body);
};

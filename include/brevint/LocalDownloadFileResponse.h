#pragma once

#include "brevint/DownloadFileResponse.h"

/// A download answered from the stored reply "DownloadFileResponse" instead of by the service.
/// Complete when constructed.
class BREVINT_API CLocalDownloadFileResponse : public CDownloadFileResponse {
public:
    /// The name under which the reply is stored.
    static constexpr const wchar_t* kStoredName = L"DownloadFileResponse";

    /// Writes the stored bytes to `destination`, with the outcomes of a download with status 200.
    /// Those that cannot be read to their end, or held in memory, are an empty reply.
    explicit CLocalDownloadFileResponse(const std::wstring& destination);
    ~CLocalDownloadFileResponse() override;
};

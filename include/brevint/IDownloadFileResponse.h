#pragma once

#include "brevint/ICheckComplete.h"
#include "brevint/IReadOnlyResponse.h"

#include <vector>

/// Outcome of a download. Poll IsComplete first; until it is true nothing else may be read.
class BREVINT_INTERFACE IDownloadFileResponse : public virtual IReadOnlyResponse,
                                                public ICheckComplete {
public:
    ~IDownloadFileResponse() override = default;

    /// The reply's bytes, those of the file on success; valid while the response lives.
    virtual const std::vector<char>& GetServerResponse() const = 0;
};

#pragma once

#include "brevint/IReadOnlyResponse.h"

#include <string>

/// Outcome of creating a folder.
class BREVINT_INTERFACE ICreateFolderResponse : public virtual IReadOnlyResponse {
public:
    ~ICreateFolderResponse() override = default;

    /// Identifier of the new folder; empty when the reply names none.
    virtual std::wstring GetFolderId() const = 0;
};

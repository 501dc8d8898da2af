#pragma once

#include "brevint/IReadOnlyResponse.h"

#include <vector>

class CFolderItem;

/// Outcome of listing a folder.
class BREVINT_INTERFACE IGetFolderContentsResponse : public virtual IReadOnlyResponse {
public:
    ~IGetFolderContentsResponse() override = default;

    /// Appends one new record per item, in the server's order. The caller deletes each record; they
    /// may outlive the response. Where memory ends none is appended, and the code becomes 1102.
    virtual void GetFolderContents(std::vector<CFolderItem*>& items) = 0;
};

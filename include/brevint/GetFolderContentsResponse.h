#pragma once

#include "brevint/BaseResponse.h"
#include "brevint/IGetFolderContentsResponse.h"

#include <memory>

class FolderListing;

/// Outcome of listing a folder. Keeps what the reply says of each item until the next parse.
class BREVINT_API CGetFolderContentsResponse : public CBaseResponse,
                                               public IGetFolderContentsResponse {
public:
    CGetFolderContentsResponse();
    ~CGetFolderContentsResponse() override;

    void ParseServerResponse() override;
    void GetFolderContents(std::vector<CFolderItem*>& items) override;
    /// Adds the messages that this response recognises. The constructor calls it.
    virtual void InitErrorMaps();

    /// A new record from one item element; the caller deletes it.
    CFolderItem* GetFolderItemFromNode(_xmlNode* node) const;
    /// Text of the direct child element with that name, which is no path; empty when there is none,
    /// and for a null node or name.
    std::wstring GetValueFromChildNode(_xmlNode* node, const char* name) const;

protected:
    std::unique_ptr<FolderListing> m_listing; ///< What the reply says of each item.
};

#pragma once

#include "brevint/brevint.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace brevint::test {

// What a caller reads from each kind of response, as one text.

inline std::wstring Detail(CBaseResponse& response) {
    return response.GetServerErrorMessage();
}

inline std::wstring Detail(CSignOutResponse& response) {
    return response.GetSignOutResult() ? L"out" : L"in";
}

inline std::wstring Detail(CCreateFolderResponse& response) {
    return response.GetFolderId() + (L'|' + response.GetServerErrorMessage());
}

inline std::wstring Detail(CVersionInfoResponse& response) {
    std::wstring text = response.GetSystemVersion();
    for (const std::wstring& version : response.GetCompatableDesktopVersions()) {
        text += L'|' + version;
    }
    return text;
}

inline std::wstring Detail(CIdentityResponse& response) {
    return std::to_wstring(response.GetUserRole()) + L'|' + response.GetUsername() + L'|' +
           response.GetIdentifyingPartyUrl();
}

inline std::wstring Detail(CTemplateResponse& response) {
    std::vector<CTemplateInfo*> infos;
    response.GetTemplateMetadata(infos);
    std::wstring text;
    for (CTemplateInfo* raw : infos) {
        const std::unique_ptr<CTemplateInfo> info(raw);
        text += info->GetName() + L'|' + info->GetId() + L'|' + info->GetKey() + L'|' +
                info->GetCreated() + L'|' + info->GetCreatedBy() + L'|' + info->GetDescription() +
                L'|' + info->GetCategory() + L';';
    }
    return text;
}

/// Of an item that is deleted then.
inline std::wstring Detail(CFolderItem* raw) {
    const std::unique_ptr<CFolderItem> item(raw);
    std::wstring text;
    for (const std::wstring& field :
         {item->GetUniqueId(), item->GetParentId(), item->GetOwnerId(), item->GetName(),
          item->GetDescription(), item->GetCreated(), item->GetModified(), item->GetSize(),
          item->GetLockedBy(), item->GetItemType(), item->GetItemTypeDescription()}) {
        text += field + L'|';
    }
    return text + (item->GetIsLocked() ? L"locked" : L"") +
           (item->GetIsPublic() ? L"public;" : L";");
}

inline std::wstring Detail(CGetFolderContentsResponse& response) {
    std::vector<CFolderItem*> items = {nullptr};
    response.GetFolderContents(items); // appends
    std::wstring text;
    for (CFolderItem* item : std::span(items).subspan(1)) {
        text += Detail(item);
    }
    return text;
}

inline std::wstring Detail(CPathResponse& response) {
    return response.GetPath();
}

inline std::wstring Detail(CJobResponse& response) {
    return response.GetJobId() + (L'|' + response.GetServerErrorMessage());
}

inline std::wstring Detail(CPollStatusResponse& response) {
    return std::to_wstring(response.GetStatus()) + L'|' + response.GetItemId();
}

/// The names of the listed items, each with a semicolon.
inline std::wstring ItemNames(IGetFolderContentsResponse& response) {
    std::vector<CFolderItem*> items;
    response.GetFolderContents(items);
    std::wstring names;
    for (CFolderItem* item : items) {
        names += item->GetName() + L';';
        delete item;
    }
    return names;
}

} // namespace brevint::test

#pragma once

#include "brevint/brevint.h"

#include <algorithm>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
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

inline std::wstring Detail(const CTemplateInfo& info) {
    return info.GetName() + L'|' + info.GetId() + L'|' + info.GetKey() + L'|' + info.GetCreated() +
           L'|' + info.GetCreatedBy() + L'|' + info.GetDescription() + L'|' + info.GetCategory() +
           L';';
}

inline std::wstring Detail(const CFolderItem& item) {
    std::wstring text;
    for (const std::wstring& field :
         {item.GetUniqueId(), item.GetParentId(), item.GetOwnerId(), item.GetName(),
          item.GetDescription(), item.GetCreated(), item.GetModified(), item.GetSize(),
          item.GetLockedBy(), item.GetItemType(), item.GetItemTypeDescription()}) {
        text += field + L'|';
    }
    return text + (item.GetIsLocked() ? L"locked" : L"") + (item.GetIsPublic() ? L"public;" : L";");
}

/// The details of records that were appended to a list of one, which deletes them.
template <class Record>
std::wstring DetailOf(const std::vector<Record*>& records) {
    std::wstring text;
    for (Record* raw : std::span(records).subspan(1)) {
        text += Detail(*std::unique_ptr<Record>(raw));
    }
    return text;
}

inline std::wstring Detail(CTemplateResponse& response) {
    std::vector<CTemplateInfo*> infos = {nullptr};
    response.GetTemplateMetadata(infos);
    return DetailOf(infos);
}

inline std::wstring Detail(CGetFolderContentsResponse& response) {
    std::vector<CFolderItem*> items = {nullptr};
    response.GetFolderContents(items);
    return DetailOf(items);
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

/// One kind of response, for what all of them have in common.
struct ResponseKind {
    std::string_view name;
    std::unique_ptr<IResponse> (*make)();
    /// What a caller reads from a response of this kind, as one text.
    std::wstring (*detail)(IReadOnlyResponse& response);
    /// Whether it reads replies as XML.
    bool parses = true;
};

template <class Response>
constexpr ResponseKind KindOf(std::string_view name, bool parses = true) {
    // Each object is one response, however many interfaces it has.
    static_assert(std::is_convertible_v<Response*, IReadOnlyResponse*>);
    return {name, []() -> std::unique_ptr<IResponse> { return std::make_unique<Response>(); },
            [](IReadOnlyResponse& response) { return Detail(dynamic_cast<Response&>(response)); },
            parses};
}

/// All kinds. Tests and the fuzzer's seeds know them by name.
inline constexpr ResponseKind kResponseKinds[] = {
    KindOf<CCheckInOutResponse>("CheckInOut"),
    KindOf<CCreateFolderResponse>("CreateFolder"),
    KindOf<CDeleteResponse>("Delete"),
    KindOf<CDownloadFileResponse>("DownloadFile", false),
    KindOf<CGetFolderContentsResponse>("GetFolderContents"),
    KindOf<CIdentityResponse>("Identity"),
    KindOf<COverwriteFileResponse>("OverwriteFile"),
    KindOf<CPathResponse>("Path"),
    KindOf<CPollOverwriteStatusResponse>("PollOverwriteStatus"),
    KindOf<CPollUploadStatusResponse>("PollUploadStatus"),
    KindOf<CSignOutResponse>("SignOut", false),
    KindOf<CTemplateResponse>("Template"),
    KindOf<CUploadFileResponse>("UploadFile"),
    KindOf<CVersionInfoResponse>("VersionInfo"),
};

/// The kind of that name; null when there is none.
constexpr const ResponseKind* FindKind(std::string_view name) {
    const auto* const found = std::ranges::find(kResponseKinds, name, &ResponseKind::name);
    return found == std::end(kResponseKinds) ? nullptr : found;
}

/// Error code, and what a caller reads.
using Reading = std::pair<double, std::wstring>;

/// Judges a response that is to be of that kind, and deletes it as a caller does.
inline Reading Read(std::string_view kind, IReadOnlyResponse* response) {
    const std::unique_ptr<IReadOnlyResponse> owner(response);
    return {owner->GetErrorCode(), FindKind(kind)->detail(*owner)};
}

} // namespace brevint::test

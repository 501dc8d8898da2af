#include "brevint/brevint.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <tuple>
#include <type_traits>
#include <typeinfo>

// Applications call through interfaces by position, so the order of the declarations is a contract.
// Both targets follow the Itanium ABI, in which a pointer to a virtual member function holds one
// more than its offset in the table, and a virtual destructor takes two slots.

namespace brevint::test {
namespace {

/// Position of an operation in its class's table of virtual operations; nothing when not virtual.
template <class Function>
std::optional<std::size_t> Slot(Function function) {
    static_assert(std::is_member_function_pointer_v<Function>);
    std::ptrdiff_t parts[2];
    static_assert(sizeof parts == sizeof function);
    std::memcpy(parts, &function, sizeof parts);
    if (parts[0] % 2 == 0) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(parts[0] - 1) / sizeof(void*);
}

/// Checks that operations follow each other in the table, from a slot on.
template <class... Functions>
void ExpectSlots(std::size_t first, Functions... functions) {
    SCOPED_TRACE(typeid(std::tuple<Functions...>).name());
    for (const std::optional<std::size_t> slot : {Slot(functions)...}) {
        EXPECT_EQ(slot, first++);
    }
}

// The first slot after a destructor, and after IReadOnlyResponse.
constexpr std::size_t kFirst = 2;
constexpr std::size_t kResponse = 4;

/// The operations of a request. WebRequest has them in the same places.
template <class R>
void ExpectRequestSlots() {
    ExpectSlots(kFirst, &R::SetRequestUrl, &R::SetRequestType, &R::AddAcceptType, &R::AddHeader,
                &R::SetCookie, &R::GetRequestStatus,
                static_cast<void (R::*)(std::wstring&)>(&R::GetRequestedData),
                static_cast<void (R::*)(std::vector<char>&)>(&R::GetRequestedData), &R::GetCookie,
                static_cast<void (R::*)()>(&R::SendRequest),
                static_cast<void (R::*)(IRequestInfo*)>(&R::SendRequest),
                static_cast<void (R::*)(IResponse*)>(&R::SendRequestAsync),
                static_cast<void (R::*)(IRequestInfo*, IResponse*)>(&R::SendRequestAsync),
                &R::SetRequestFlags, static_cast<void (R::*)(const wchar_t*)>(&R::SetUploadData),
                static_cast<void (R::*)(const std::vector<char>&)>(&R::SetUploadData),
                &R::ClearAcceptTypes, &R::ClearHeaders, &R::GetRedirectUrl);
}

TEST(ClassLayout, OfRequests) {
    ExpectRequestSlots<IRequest>();
    ExpectRequestSlots<WebRequest>();
    ExpectSlots(kFirst + 19, &WebRequest::GetRequestedDataAsync);
    using I = IRequestInfo;
    ExpectSlots(kFirst, &I::GetRequestUrl, &I::GetRequestType, &I::GetAcceptTypes, &I::GetHeaders,
                &I::GetRequestFlags, &I::GetUploadString, &I::GetUploadData);
    using Factory = IRequestFactory;
    ExpectSlots(
        0, static_cast<IRequest* (Factory::*)()>(&Factory::Create),
        static_cast<IRequest* (Factory::*)(const wchar_t*, WebRequestType)>(&Factory::Create));
    EXPECT_FALSE(std::has_virtual_destructor_v<IRequestFactory>);
}

TEST(ClassLayout, OfResponses) {
    using R = IResponse;
    ExpectSlots(kFirst, &IReadOnlyResponse::GetSucceeded, &IReadOnlyResponse::GetErrorCode);
    ExpectSlots(kResponse, &R::GetServerResponse, &R::GetServerResponseAsString,
                &R::SetServerResponse, &R::GetServerErrorMessage, &R::GetStatusCode,
                &R::ParseServerResponse, &R::ProcessErrorMessage);
    ExpectSlots(kFirst, &ICheckComplete::IsComplete);
    ExpectSlots(kResponse, &IJobResponse::GetJobId);
    ExpectSlots(kResponse, &IPollStatusResponse::GetStatus, &IPollStatusResponse::GetItemId);
    ExpectSlots(kResponse, &IGetFolderContentsResponse::GetFolderContents);
    ExpectSlots(kResponse, &ICreateFolderResponse::GetFolderId);
    ExpectSlots(kResponse, &ITemplateResponse::GetTemplateMetadata);
    EXPECT_TRUE(Slot(&CIdentityResponse::InitErrorMaps));
    EXPECT_FALSE(Slot(&CVersionInfoResponse::InitErrorMaps));
    // What the library hands out is freed by the library, whoever deletes it.
    EXPECT_TRUE(std::has_virtual_destructor_v<CFolderItem>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CTemplateInfo>);
    EXPECT_TRUE(std::has_virtual_destructor_v<SignInResponse>);
}

TEST(ClassLayout, OfProxiesAndTheCache) {
    using P = IRepositoryProxy;
    ExpectSlots(kFirst, &P::CheckOut, &P::CheckIn, &P::DownloadFile, &P::OverwriteFile,
                &P::UploadFile, &P::GetFolderContents, &P::GetPath, &P::CreateFolder, &P::Delete,
                &P::PollUploadFileStatus, &P::PollOverwriteFileStatus);
    ExpectSlots(kFirst, &ISignInProxy::SignIn);
    ExpectSlots(kFirst, &ISignOutProxy::SignOut);
    ExpectSlots(kFirst, &IIdentityProxy::GetIdentity);
    ExpectSlots(kFirst, &ITemplateProxy::GetTemplates);
    ExpectSlots(0, &IVersionProxy::GetVersionInfo);
    EXPECT_FALSE(std::has_virtual_destructor_v<IVersionProxy>);
    ExpectSlots(kFirst, &IProxyFactory::Create);
    ExpectSlots(kFirst, &IInternetCache::GetCookie, &IInternetCache::SetCookie,
                &IInternetCache::DeleteCookie);
}

} // namespace
} // namespace brevint::test

#include "requests/CheckInOutRequestInfo.h"
#include "requests/CreateFolderRequestInfo.h"
#include "requests/DeleteRequestInfo.h"
#include "requests/DownloadFileRequestInfo.h"
#include "requests/GetFolderContentsRequestInfo.h"
#include "requests/IdentityRequestInfo.h"
#include "requests/OverwriteFileRequestInfo.h"
#include "requests/PathRequestInfo.h"
#include "requests/PollFileStatusRequestInfo.h"
#include "requests/SignOutRequestInfo.h"
#include "requests/TemplateRequestInfo.h"
#include "requests/UploadFileRequestInfo.h"
#include "requests/VersionInfoRequestInfo.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace brevint::test {
namespace {

using Info = std::unique_ptr<IRequestInfo>;
using Text = const std::wstring&;

// Each makes a description from the service's address and one identifier.
template <class T>
Info Plain(Text base, Text) {
    return std::make_unique<T>(base);
}
template <class T, int... mode>
Info WithId(Text base, Text id) {
    return std::make_unique<T>(base, id, mode...);
}
template <class T>
Info WithTwo(Text base, Text id) {
    return std::make_unique<T>(base, id, id);
}

enum { Get, Put, Post, Delete };
enum { Html = 0, Xml = 1, Bytes = 3 };
constexpr int kStay = 0x200000; // redirects are not followed
constexpr const wchar_t* kFile = L"Content-Type: multipart/form-data; "
                                 L"boundary=---------------------8cdfaf76df000f9\r\n";

/// "%" in the path and in the body stands for the identifier.
const struct {
    Info (*make)(Text base, Text id);
    const wchar_t* path;
    int verb;
    int accept;
    int flags;
    const wchar_t* body = L"";
    const wchar_t* headers = L"";
} kRows[] = {
    {WithId<CCheckInOutRequestInfo, 0>, L"Repository/Items/%/Locked", Put, Xml, kStay,
     L"{\"ItemId\":\"%\",\"Locked\":false}"},
    {WithId<CCheckInOutRequestInfo, 1>, L"Repository/Items/%/Locked", Put, Xml, kStay,
     L"{\"ItemId\":\"%\",\"Locked\":true}"},
    {WithId<CCheckInOutRequestInfo, 2>, L"Repository/Items/%/Locked", Put, Xml, kStay},
    {WithId<CCheckInOutRequestInfo, -1>, L"Repository/Items/%/Locked", Put, Xml, kStay},
    {WithTwo<CCreateFolderRequestInfo>, L"Repository/Items/%/Items", Post, Xml, kStay,
     L"{\"ItemType\":0,\"Name\":\"%\"}"},
    {WithId<CDeleteRequestInfo>, L"Repository/Items", Delete, Xml, kStay, L"{\"ItemIds\":[\"%\"]}"},
    {WithId<CDownloadFileRequestInfo>, L"Repository/Files/%", Get, Bytes, kStay},
    {WithId<CGetFolderContentsRequestInfo>, L"Repository/Items/%/Items", Get, Xml, kStay},
    {WithId<CPathRequestInfo>, L"Repository/Items/%/Path", Get, Xml, kStay},
    {WithId<CPollFileStatusRequestInfo>, L"Repository/Jobs/%", Get, Xml, 0},
    {WithTwo<CUploadFileRequestInfo>, L"Repository/Items/%/Files", Post, Xml, kStay, L"", kFile},
    {WithTwo<COverwriteFileRequestInfo>, L"Repository/Files/%", Put, Xml, kStay, L"", kFile},
    {Plain<CIdentityRequestInfo>, L"application/identity", Get, Xml, 0},
    {Plain<CSignOutRequestInfo>, L"SignOut", Get, Html, 0},
    {WithId<CTemplateRequestInfo>, L"Analysis/Types?source=templates&key=%", Get, Xml, kStay},
    {Plain<CVersionInfoRequestInfo>, L"Application/Versions", Get, Xml, 0},
};

std::wstring FillIn(std::wstring text, Text id) {
    const std::size_t place = text.find(L'%');
    return place == std::wstring::npos ? text : text.replace(place, 1, id);
}

TEST(RequestInfo, SaysHowTheCallIsMade) {
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.path);
        const Info info = row.make(L"", L"no file");
        EXPECT_EQ(info->GetRequestUrl(), L"");
        EXPECT_EQ(info->GetRequestType(), row.verb);
        std::vector<AcceptType> accept = {AcceptTypeHtml};
        info->GetAcceptTypes(accept); // appends
        EXPECT_EQ(std::vector<int>(accept.begin(), accept.end()), (std::vector{2, row.accept}));
        EXPECT_EQ(info->GetHeaders(), row.headers);
        EXPECT_EQ(info->GetRequestFlags(), row.flags);
        EXPECT_TRUE(info->GetUploadData().empty()); // no file has such a name
        for (const std::wstring id :
             {L"6f9619ff-8b86-d011-b42d-00c04fc964ff", L"", L"a/b?c=d&e%20#f", L"..",
              L"say \"hi\" \\ \n", L"\u00dcberblick \u2014 \u6982\u8981",
              L"%ITEMID%%PARENTID%%FILEID%%FOLDERID%%JOBID%%TEMPLATETYPEID%%PARENTFOLDERID%"}) {
            SCOPED_TRACE(id);
            const Info filled = row.make(L"https://h:8/s/", id);
            EXPECT_EQ(filled->GetRequestUrl(), L"https://h:8/s/" + FillIn(row.path, id));
            EXPECT_EQ(filled->GetUploadString(), FillIn(row.body, id));
        }
    }
}

} // namespace
} // namespace brevint::test

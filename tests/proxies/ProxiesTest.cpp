#include "brevint/brevint.h"
#include "tests/library/Helpers.h"
#include "tests/proxies/ConnectionFailure.h"
#include "tests/support/AwaitComplete.h"
#include "tests/support/RefusedPort.h"
#include "tests/support/ResponseKinds.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <tuple>

namespace brevint::test {
namespace {

constexpr const wchar_t* kFileName = L"\u00DCberblick \u2014 \u6982\u8981.txt";
constexpr const char* kFileNameUtf8 = "\xC3\x9C"
                                      "berblick \xE2\x80\x94 \xE6\xA6\x82\xE8\xA6\x81.txt";

using Text = const std::wstring&;

/// One operation of the library, on the wire.
struct Operation {
    const char* kind; ///< of its response
    std::function<IReadOnlyResponse*(IRequestFactory&, Text url, Text id)> call;
    std::string request; ///< verb and target, in which "$" stands for the identifier
    std::string body;
    std::string reply;
    std::wstring detail; ///< what the success brings
    bool followsRedirects = false;
    const char* accepted = "text/xml";
    double denied = ErrorCode::AuthorizationFailed;
    double unanswered = ErrorCode::EmptyReply;
};

/// An operation of the repository.
template <class Call>
auto Repository(Call call) {
    return [call](IRequestFactory& factory, Text url, Text id) -> IReadOnlyResponse* {
        CRepositoryProxy proxy(&factory);
        return std::invoke(call, proxy, url, id);
    };
}

TEST(Proxies, OperationsOnTheWireAndTheirReplies) {
    const TempFolder folder;
    const std::string content("file\0\r\n\xFF content", 16);
    const auto path = WriteFile(folder.Path(kFileName), content);
    const auto file = Multipart(kFileNameUtf8, content);
    using Proxy = CRepositoryProxy;
    const Operation operations[] = {
        {"CheckInOut", Repository(&Proxy::CheckOut), "PUT /app/Repository/Items/$/Locked",
         R"({"ItemId":"$","Locked":true})", "", L""},
        {"CheckInOut", Repository(&Proxy::CheckIn), "PUT /app/Repository/Items/$/Locked",
         R"({"ItemId":"$","Locked":false})", "<Message>Item already checked in.</Message>",
         L"Item already checked in."},
        {"DownloadFile", Repository([&](Proxy& proxy, Text url, Text id) {
             auto* const response = proxy.DownloadFile(url, id, folder.Path(L"download"));
             EXPECT_TRUE(AwaitComplete(*response));
             return response;
         }),
         "GET /app/Repository/Files/$", "", "", L"", false, "application/octet-stream"},
        {"OverwriteFile", Repository([&](Proxy& proxy, Text url, Text id) {
             return proxy.OverwriteFile(url, id, path);
         }),
         "PUT /app/Repository/Files/$", file, "<JobId>j1</JobId>", L"j1|"},
        {"UploadFile", Repository([&](Proxy& proxy, Text url, Text id) {
             return proxy.UploadFile(url, id, path);
         }),
         "POST /app/Repository/Items/$/Files", file, "<JobId>j2</JobId>", L"j2|"},
        {"GetFolderContents", Repository(&Proxy::GetFolderContents),
         "GET /app/Repository/Items/$/Items", "", "<Item><Name>\xC3\xBC</Name></Item>",
         L"|||\u00FC||||||||lockedpublic;"},
        {"Path", Repository(&Proxy::GetPath), "GET /app/Repository/Items/$/Path", "",
         "<Path>/a/b</Path>", L"/a/b"},
        {"CreateFolder", Repository([](Proxy& proxy, Text url, Text id) {
             return proxy.CreateFolder(url, id, L"\u00FC \"\\%ITEMID%");
         }),
         "POST /app/Repository/Items/$/Items",
         "{\"ItemType\":0,\"Name\":\"\xC3\xBC \"\\%ITEMID%\"}", "<UniqueId>n1</UniqueId>", L"n1|"},
        {"Delete", Repository(&Proxy::Delete), "DELETE /app/Repository/Items",
         R"({"ItemIds":["$"]})", "", L""},
        {"PollUploadStatus", Repository(&Proxy::PollUploadFileStatus), "GET /app/Repository/Jobs/$",
         "", "<Status>2</Status><Details>n2</Details>", L"1|n2", true},
        {"PollOverwriteStatus", Repository(&Proxy::PollOverwriteFileStatus),
         "GET /app/Repository/Jobs/$", "", "<Status>0</Status>", L"0|", true},
        {"Template",
         [](IRequestFactory& factory, Text url, Text) {
             return CTemplateProxy(&factory).GetTemplates(url.c_str(), L"t 1");
         },
         "GET /app/Analysis/Types?source=templates&key=t%201", "",
         "<Item><Name>a &amp;amp; b</Name></Item><Item/>", L"a & b||||||;||||||;"},
        {"VersionInfo",
         [](IRequestFactory& factory, Text url, Text) {
             return CVersionProxy(&factory).GetVersionInfo(url.c_str());
         },
         "GET /app/Application/Versions", "",
         "<Version>7</Version><Client><Version>8.1</Version><Version/></Client>", L"7|8.1|", true,
         "text/xml", ErrorCode::Success},
        {"SignOut",
         [](IRequestFactory& factory, Text url, Text) {
             return CSignOutProxy(&factory).SignOut(url);
         },
         "GET /app/SignOut", "", "", L"out", true, "text/html", ErrorCode::Success,
         ErrorCode::Success},
        {"Identity",
         [](IRequestFactory& factory, Text url, Text) {
             return CIdentityProxy(&factory).GetIdentity(url);
         },
         "GET /app/application/identity", "",
         "<IdentifyingPartyUri>http://p</IdentifyingPartyUri><Name>Zo\xC3\xAB</Name>"
         "<IsAdmin>True</IsAdmin>",
         L"1|Zo\u00EB|http://p", true, "text/xml", ErrorCode::IdentityPartyMissing,
         ErrorCode::ReplyNotXml},
    };
    WebRequestFactory factory;
    const RefusedPort refused;
    for (const Operation& operation : operations) {
        SCOPED_TRACE(operation.request);
        for (const std::string id :
             {"6f9619ff-8b86-d011-b42d-00c04fc964ff", "i/1?",
              "%ITEMID%%PARENTID%%FILEID%%FOLDERID%%JOBID%%PARENTFOLDERID%"}) {
            SCOPED_TRACE(id);
            const std::wstring wideId(id.begin(), id.end());
            const auto call = [&](const std::wstring& url) {
                return Read(operation.kind, operation.call(factory, url, wideId));
            };
            ScriptedServer server;
            server.On("*").Reply(200, {}, Document(std::string(250'000, ' ') + operation.reply));
            server.On("*").Reply(401, {}, Document("<Message>Authorization failed.</Message>"));
            server.On("*").Reply(302, {{"Location", "/elsewhere"}}, "moved");
            server.On("/elsewhere").Reply(401, {}, Document("<Message>Elsewhere.</Message>"));

            EXPECT_EQ(call(server.Url("/app")), Reading(ErrorCode::Success, operation.detail));
            const auto request = server.Requests().at(0);
            EXPECT_EQ(request.method + ' ' + request.target, Replace(operation.request, "$", id));
            EXPECT_EQ(request.Header("Accept"), operation.accepted);
            EXPECT_EQ(request.Header("Content-Type"),
                      operation.body == file ? "multipart/form-data; boundary=" + kBoundary : "");
            EXPECT_EQ(request.body, Replace(operation.body, "$", id));

            EXPECT_EQ(call(server.Url("/app/")).first, operation.denied);
            EXPECT_EQ(server.Requests().at(1).target, request.target) << "one slash in between";
            EXPECT_EQ(server.ConnectionCount(), 1u) << "calls in a row share it";
            call(server.Url("/app"));
            EXPECT_EQ(server.RequestsFor("/elsewhere").size(),
                      operation.followsRedirects ? 1u : 0u);
            for (const std::wstring& nowhere : {refused.Url(), std::wstring()}) {
                EXPECT_EQ(call(nowhere).first, operation.unanswered);
            }
        }
    }
}

TEST(Proxies, SayWhereTheServiceIsNotReached) {
    for (const int status : {200, 403}) {
        ScriptedServer server;
        server.On("*").Reply(status);
        WebRequestFactory factory;
        const std::unique_ptr<CIdentityResponse> user(
            CIdentityProxy(&factory).GetIdentity(server.Url("/app")));
        EXPECT_EQ(user->GetErrorMessage(),
                  status == 200 ? L"" : ConnectionFailure(server.Url("/app")));
        const std::unique_ptr<CSignOutResponse> session(
            CSignOutProxy(&factory).SignOut(server.Url("/app")));
        EXPECT_EQ(session->GetSignOutResult(), status == 200);
    }
}

TEST(Proxies, AnIdentifierCannotEndTheRequestLine) {
    const std::pair<const wchar_t*, std::string> cases[] = {
        {L"", "/app/Repository/Items//Path"},
        {L"..", "/app/Repository/Path"},
        {L"a\r\nX-Mine: 1", "/app/Repository/Items/a%0D%0AX-Mine:%201/Path"},
        {L"a\x01\t\x7F", "/app/Repository/Items/a%01%09%7F/Path"},
        {L"a#b", "/app/Repository/Items/a"}, // Wine sends the rest too
    };
    for (const auto& [id, target] : cases) {
        SCOPED_TRACE(target);
        ScriptedServer server;
        server.On("*").Reply(200, {}, Document("<Path>/</Path>"));
        WebRequestFactory factory;
        CRepositoryProxy proxy(&factory);
        EXPECT_EQ(Read("Path", proxy.GetPath(server.Url("/app"), id)).second, L"/");
        const auto request = server.Requests().at(0);
        EXPECT_EQ(request.target.substr(0, request.target.find('#')), target);
        EXPECT_EQ(request.HeaderCount("X-Mine"), 0u);
    }
}

/// Handle numbers are used again as soon as they are free, so a request that closed a number which
/// is not its own any more would hurt a request of another thread.
TEST(Proxies, ServesEachOfManyThreads) {
    const TempFolder folder;
    ScriptedServer server;
    std::atomic<int> wrong = 0;
    const auto work = [&](const std::wstring& id) {
        const auto url = server.Url("");
        const auto path = folder.Path(id);
        WebRequestFactory factory;
        CRepositoryProxy proxy(&factory);
        for (int round = 0; round < 125; ++round) {
            for (const auto& [kind, response, detail] :
                 {std::tuple<const char*, IReadOnlyResponse*, std::wstring>(
                      "Path", proxy.GetPath(url, id), id),
                  {"OverwriteFile", proxy.OverwriteFile(url, id, path), id + L'|'},
                  {"PollUploadStatus", proxy.PollUploadFileStatus(url, id), L"1|" + id},
                  {"GetFolderContents", proxy.GetFolderContents(url, id),
                   L"|||" + id + L"||||||||lockedpublic;"}}) {
                wrong += Read(kind, response) != Reading(ErrorCode::Success, detail);
            }
            // Handles that come and go without traffic make numbers change hands quickly.
            for (int opening = 0; opening < 5; ++opening) {
                WebRequest(url.c_str(), WebRequestTypeGet).Connect(0);
            }
            if (round % 25 == 0) {
                const std::unique_ptr<IDownloadFileResponse> file(
                    proxy.DownloadFile(url, id, path));
                wrong += !AwaitComplete(*file) || Utf8::ToWide(ReadFile(path)) != id;
            }
        }
    };
    std::vector<std::jthread> threads;
    for (const std::string id : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
        server.On("GET /Repository/Files/" + id).Reply(200, {}, id);
        const auto reply =
            Document("<Path>" + id + "</Path><JobId>" + id + "</JobId><Status>2</Status><Details>" +
                     id + "</Details><Item><Name>" + id + "</Name></Item>");
        for (const auto* target : {"/Items/%/Path", "/Items/%/Items", "/Jobs/%", "/Files/%"}) {
            server.On("/Repository" + Replace(target, "%", id)).Reply(200, {}, reply);
        }
        threads.emplace_back(work, Utf8::ToWide(id));
    }
    threads.clear();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(server.Requests().size(), 8u * (500u + 5u));
}

} // namespace
} // namespace brevint::test

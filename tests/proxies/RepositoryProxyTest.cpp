#include "brevint/brevint.h"
#include "tests/library/Details.h"
#include "tests/library/Helpers.h"
#include "tests/support/AwaitComplete.h"
#include "tests/support/RefusedPort.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"

#include <boost/algorithm/string/replace.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>

namespace brevint::test {
namespace {

constexpr const wchar_t* kFileName = L"\u00DCberblick \u2014 \u6982\u8981.txt";
constexpr const char* kFileNameUtf8 = "\xC3\x9C"
                                      "berblick \xE2\x80\x94 \xE6\xA6\x82\xE8\xA6\x81.txt";

/// What a caller reads from a response.
struct Result {
    bool succeeded;
    double code;
    std::wstring detail;
};

/// Reads a response and deletes it, as a caller does.
template <class Response, class Detail>
Result Read(Response* response, Detail detail) {
    const std::unique_ptr<Response> owner(response);
    return {owner->GetSucceeded(), owner->GetErrorCode(), std::invoke(detail, *owner)};
}

template <class Response>
Result Read(Response* response) {
    return Read(response, [](auto&) { return L""; });
}

std::wstring JobState(IPollStatusResponse& response) {
    return std::to_wstring(response.GetStatus()) + L' ' + response.GetItemId();
}

TEST(RepositoryProxy, OperationsOnTheWireAndTheirReplies) {
    const TempFolder folder;
    const std::string content("file\0\r\n\xFF content", 16);
    const auto path = WriteFile(folder.Path(kFileName), content);
    const auto file = Multipart(kFileNameUtf8, content);
    using Proxy = CRepositoryProxy;
    using Text = const std::wstring&;
    struct Case {
        std::function<Result(Proxy&, Text url, Text id)> call;
        std::string request; ///< verb and target, in which "$" stands for the identifier
        std::string body;
        std::string reply;
        std::wstring detail; ///< what the success brings
        bool followsRedirects = false;
    };
    const Case cases[] = {
        {[](Proxy& p, Text url, Text id) { return Read(p.CheckOut(url, id)); },
         "PUT /app/Repository/Items/$/Locked", R"({"ItemId":"$","Locked":true})", "", L""},
        {[](Proxy& p, Text url, Text id) { return Read(p.CheckIn(url, id)); },
         "PUT /app/Repository/Items/$/Locked", R"({"ItemId":"$","Locked":false})",
         "<Message>Item already checked in.</Message>", L""},
        {[&](Proxy& p, Text url, Text id) {
             return Read(p.OverwriteFile(url, id, path), &IJobResponse::GetJobId);
         },
         "PUT /app/Repository/Files/$", file, "<JobId>j1</JobId>", L"j1"},
        {[&](Proxy& p, Text url, Text id) {
             return Read(p.UploadFile(url, id, path), &IJobResponse::GetJobId);
         },
         "POST /app/Repository/Items/$/Files", file, "<JobId>j2</JobId>", L"j2"},
        {[](Proxy& p, Text url, Text id) { return Read(p.GetFolderContents(url, id), ItemNames); },
         "GET /app/Repository/Items/$/Items", "",
         "<Item><Name>a</Name></Item><Item><Name>\xC3\xBC</Name></Item>", L"a;\u00FC;"},
        {[](Proxy& p, Text url, Text id) {
             return Read(p.GetPath(url, id), &CPathResponse::GetPath);
         },
         "GET /app/Repository/Items/$/Path", "", "<Path>/a/b</Path>", L"/a/b"},
        {[](Proxy& p, Text url, Text id) {
             return Read(p.CreateFolder(url, id, L"\u00FC \"\\%ITEMID%"),
                         &ICreateFolderResponse::GetFolderId);
         },
         "POST /app/Repository/Items/$/Items",
         "{\"ItemType\":0,\"Name\":\"\xC3\xBC \"\\%ITEMID%\"}", "<UniqueId>n1</UniqueId>", L"n1"},
        {[](Proxy& p, Text url, Text id) { return Read(p.Delete(url, id)); },
         "DELETE /app/Repository/Items", R"({"ItemIds":["$"]})", "", L""},
        {[](Proxy& p, Text url, Text id) {
             return Read(p.PollUploadFileStatus(url, id), JobState);
         },
         "GET /app/Repository/Jobs/$", "", "<Status>2</Status><Details>n2</Details>", L"1 n2",
         true},
        {[](Proxy& p, Text url, Text id) {
             return Read(p.PollOverwriteFileStatus(url, id), JobState);
         },
         "GET /app/Repository/Jobs/$", "", "<Status>0</Status>", L"0 ", true},
    };
    WebRequestFactory factory;
    const RefusedPort refused;
    for (const auto& test : cases) {
        SCOPED_TRACE(test.request);
        for (const std::string id :
             {"6f9619ff-8b86-d011-b42d-00c04fc964ff", "i/1?",
              "%ITEMID%%PARENTID%%FILEID%%FOLDERID%%JOBID%%PARENTFOLDERID%"}) {
            SCOPED_TRACE(id);
            const auto filledIn = [&id](const std::string& text) {
                return boost::replace_all_copy(text, "$", id);
            };
            const std::wstring wideId(id.begin(), id.end());
            ScriptedServer server;
            server.On("*").Reply(200, {}, Document(std::string(250'000, ' ') + test.reply));
            server.On("*").Reply(401, {}, Document("<Message>Authorization failed.</Message>"));
            server.On("*").Reply(302, {{"Location", "/elsewhere"}}, "moved");
            server.On("/elsewhere").Reply(401, {}, Document("<Message>Elsewhere.</Message>"));
            CRepositoryProxy proxy(&factory);

            const auto success = test.call(proxy, server.Url("/app"), wideId);
            EXPECT_TRUE(success.succeeded);
            EXPECT_EQ(success.code, 1101);
            EXPECT_EQ(success.detail, test.detail);
            const auto request = server.Requests().at(0);
            EXPECT_EQ(request.method + ' ' + request.target, filledIn(test.request));
            EXPECT_EQ(request.Header("Accept"), "text/xml");
            EXPECT_EQ(request.Header("Content-Type"),
                      test.body == file ? "multipart/form-data; boundary=" + kBoundary : "");
            EXPECT_EQ(request.body, filledIn(test.body));

            EXPECT_EQ(test.call(proxy, server.Url("/app/"), wideId).code, 1103);
            EXPECT_EQ(server.Requests().at(1).target, request.target) << "one slash in between";
            EXPECT_EQ(server.ConnectionCount(), 1u) << "calls in a row share it";
            test.call(proxy, server.Url("/app"), wideId);
            EXPECT_EQ(server.RequestsFor("/elsewhere").size(), test.followsRedirects ? 1u : 0u);
            for (const std::wstring& nowhere : {refused.Url(), std::wstring()}) {
                EXPECT_EQ(test.call(proxy, nowhere, wideId).code, 1102);
            }
        }
    }
}

TEST(RepositoryProxy, AnIdentifierCannotEndTheRequestLine) {
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
        EXPECT_EQ(Read(proxy.GetPath(server.Url("/app"), id), &CPathResponse::GetPath).detail,
                  L"/");
        const auto request = server.Requests().at(0);
        EXPECT_EQ(request.target.substr(0, request.target.find('#')), target);
        EXPECT_EQ(request.HeaderCount("X-Mine"), 0u);
    }
}

TEST(RepositoryProxy, Downloads) {
    const TempFolder folder;
    const auto path = WriteFile(folder.Path(kFileName), "what was there, and is longer");
    const std::string pieces[] = {std::string("a\0b\r\n", 5), "c"};
    ScriptedServer server;
    server.On("*").Reply(404, {}, Document("<Message>Requested item not found.</Message>"));
    server.On("*").ReplyChunked(200, {}, {pieces[0], pieces[1]});
    WebRequestFactory factory;
    CRepositoryProxy proxy(&factory);
    for (const double code : {1300, 1101}) {
        const std::unique_ptr<IDownloadFileResponse> response(
            proxy.DownloadFile(server.Url(""), L"f1", path));
        ASSERT_TRUE(AwaitComplete(*response));
        EXPECT_EQ(response->GetErrorCode(), code);
        EXPECT_EQ(response->GetSucceeded(), code == 1101);
        EXPECT_EQ(ReadFile(path),
                  code == 1101 ? pieces[0] + pieces[1] : "what was there, and is longer");
        EXPECT_EQ(server.Requests().back().target, "/Repository/Files/f1");
        EXPECT_EQ(server.Requests().back().Header("Accept"), "application/octet-stream");
    }
}

/// Handle numbers are used again as soon as they are free, so a request that closed a number which
/// is not its own any more would hurt a request of another thread.
TEST(RepositoryProxy, ServesEachOfManyThreads) {
    const TempFolder folder;
    ScriptedServer server;
    std::atomic<int> wrong = 0;
    const auto work = [&](const std::wstring& id) {
        const auto url = server.Url("");
        const auto path = folder.Path(id);
        WebRequestFactory factory;
        CRepositoryProxy proxy(&factory);
        for (int round = 0; round < 125; ++round) {
            wrong += Read(proxy.GetPath(url, id), &CPathResponse::GetPath).detail != id;
            wrong += Read(proxy.GetFolderContents(url, id), ItemNames).detail != id + L';';
            wrong += Read(proxy.OverwriteFile(url, id, path), &IJobResponse::GetJobId).detail != id;
            wrong += Read(proxy.PollUploadFileStatus(url, id), JobState).detail != L"1 " + id;
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
            std::string text = target;
            server.On("/Repository" + text.replace(text.find('%'), 1, id)).Reply(200, {}, reply);
        }
        threads.emplace_back(work, Utf8::ToWide(id));
    }
    threads.clear();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(server.Requests().size(), 8u * (500u + 5u));
}

} // namespace
} // namespace brevint::test

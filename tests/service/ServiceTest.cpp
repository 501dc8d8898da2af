#include "base/Hex.h"
#include "service/Blob.h"
#include "service/ReferenceService.h"
#include "service/ServiceError.h"
#include "tests/support/Environment.h"
#include "tests/support/TempFolder.h"

#include <boost/algorithm/string/replace.hpp>
#include <gtest/gtest.h>

#include <set>

namespace brevint::test {
namespace {

using namespace std::string_literals;
using service::HttpReply;
using service::HttpRequest;

const service::HttpHeaders kFormType = {{"Content-Type", "application/x-www-form-urlencoded"}};
const service::HttpHeaders kMultipartType = {{"Content-Type", "multipart/form-data; boundary=Sep"}};
const std::string kDenied = "Authorization failed.";
const std::string kNotFound = "Requested item not found.";
const std::string kProjectRoot(service::Repository::kProjectRootId);
const std::string kItems = "/Repository/Items/", kJobs = "/Repository/Jobs/";

struct Request {
    std::string method, target, body = {};
    service::HttpHeaders headers = {}; // Without a Host it is "localhost".
};

// The text of the error document is "" when the call does not fail.
struct Case {
    Request request;
    int status;
    std::string text;
};

// The text that stands between `open` and the next `close`; "" when there is none.
std::string Between(std::string_view text, std::string_view open, std::string_view close) {
    const auto start = text.find(open);
    if (start == std::string_view::npos) {
        return {};
    }
    text.remove_prefix(start + open.size());
    return std::string(text.substr(0, text.find(close)));
}

std::string Header(const HttpReply& reply, std::string_view name) {
    return HttpRequest{.headers = reply.headers}.Header(name);
}

// A service of its own for each test, and what a client does with it.
class Service : public ::testing::Test {
protected:
    Service() {
        m_ada = Cookies(Exchange(TokenPost("userName=ada&password=ada-secret")));
        m_ben = Cookies(Exchange(TokenPost("userName=ben&password=ben-secret")));
        m_bridge = Find(kProjectRoot, "Bridge");
        m_notes = Find(m_bridge, "Notes.txt");
    }

    static Request List(const std::string& id) { return {"GET", kItems + id + "/Items"}; }
    static Request Download(const std::string& id) { return {"GET", "/Repository/Files/" + id}; }

    static Request Create(const std::string& parent, const std::string& name) {
        return {"POST", List(parent).target, "{\"ItemType\":0,\"Name\":\"" + name + "\"}"};
    }

    static Request SetLocked(const std::string& id, const std::string& locked) {
        return {"PUT", kItems + id + "/Locked",
                "{\"ItemId\":\"" + id + "\",\"Locked\":" + locked + "}"};
    }

    static Request Delete(const std::string& id) {
        return {"DELETE", "/Repository/Items", "{\"ItemIds\":[\"" + id + "\"]}"};
    }

    static std::string Multipart(const std::string& name, const std::string& content) {
        return "--Sep\r\nContent-Disposition: form-data; name=\"file\"; filename=\"" + name +
               "\"\r\nContent-Type: application/octet-stream\r\n\r\n" + content + "\r\n--Sep--\r\n";
    }

    static Request Upload(const std::string& parent, const std::string& name,
                          const std::string& content) {
        return {"POST", kItems + parent + "/Files", Multipart(name, content), kMultipartType};
    }

    static Request Overwrite(const std::string& id, const std::string& name,
                             const std::string& content) {
        return {"PUT", Download(id).target, Multipart(name, content), kMultipartType};
    }

    // A request as the document tells of it, with this item.
    static Request Documented(const service::Resource& resource, const std::string& id) {
        Request request{std::string(resource.method), "/" + std::string(resource.pattern),
                        std::string(resource.request)};
        boost::replace_all(request.target, "{id}", id);
        if (!request.body.starts_with('`')) {
            request.body = Multipart("a.pdf", "x");
            request.headers = kMultipartType;
        }
        for (const auto& [example, text] :
             {std::pair("`"s, ""s), {",…", ""}, {"…", "New"}, {"\"ID\"", "\"" + id + "\""}}) {
            boost::replace_all(request.body, example, text);
        }
        return request;
    }

    // What the server does with a request, without a connection. `cookies` stands in the header.
    HttpReply Exchange(const Request& request, const std::string& cookies = {}) const {
        HttpRequest message{request.method, Between(request.target, "", "?"),
                            Between(request.target, "?", "#"), request.headers, ""};
        message.headers.emplace_back("Cookie", cookies);
        if (message.Header("Host").empty()) {
            message.headers.emplace_back("Host", "localhost");
        }
        try {
            const service::Admission admission = m_service.Admit(message);
            if (admission.refusal) {
                return *admission.refusal;
            }
            message.body = request.body;
            const std::string_view body = request.body;
            for (std::size_t i = 0; admission.receive && i < body.size(); i += 70) {
                admission.receive(body.substr(i, 70));
            }
            HttpReply reply = admission.answer(message);
            if (reply.file) {
                const auto [offset, length] =
                    reply.range.value_or(service::ByteRange{0, reply.file->Size()});
                reply.body.resize(length);
                reply.file->Read(offset, reply.body.data(), length);
            }
            return reply;
        } catch (const std::exception& failure) {
            return service::ErrorReply(failure);
        }
    }

    void Check(const std::string& cookies, const std::vector<Case>& cases) const {
        for (const auto& [request, status, text] : cases) {
            const HttpReply reply = Exchange(request, cookies);
            EXPECT_EQ(Between(reply.body, "<Message>", "</Message>"), text);
            EXPECT_EQ(reply.status, status) << request.method << " " << request.target;
        }
    }

    // Posts to the portal, at the address that the dashboard's redirect names.
    Request CredentialPost(const std::string& form) const {
        const std::string location = Exchange({"GET", "/"}).headers.at(0).second;
        return {"POST", location.substr(location.find("/portal")), form, kFormType};
    }

    // What the page of a successful sign-in posts to the federation endpoint.
    Request TokenPost(const std::string& credentials) const {
        const std::string page = Exchange(CredentialPost(credentials)).body;
        std::string form = "request=sign-in";
        for (const std::string field : {"token", "context"}) {
            std::string value = Between(page, "name=\"" + field + "\" value=\"", "\"");
            // "&amp;" last, so that what it yields is not unescaped again.
            for (const auto& [entity, character] :
                 {std::pair("&lt;", "<"), {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}}) {
                boost::replace_all(value, entity, character);
            }
            form += "&" + field + "=" + base::PercentEncode(value);
        }
        return {"POST", "/federation", form, kFormType};
    }

    // What a client sends that has the cookies of a sign-in.
    static std::string Cookies(const HttpReply& signedIn) {
        return Between(signedIn.headers.at(1).second, "", ";") + "; " +
               Between(signedIn.headers.at(2).second, "", ";");
    }

    // The id of the item of that name in the folder.
    std::string Find(const std::string& folderId, const std::string& name) const {
        const std::string list = Exchange(List(folderId), m_ada).body;
        const std::string head = list.substr(0, list.find("<Name>" + name + "</Name>"));
        return head == list ? "" : Between(head.substr(head.rfind("<Item>")), "<UniqueId>", "<");
    }

    std::string Begin(const Request& upload) const {
        return Between(Exchange(upload, m_ada).body, "<JobId>", "<");
    }

    // Polls the job to its end; gives the states that it went through and its details.
    std::string Finish(const std::string& jobId) const {
        std::string states, job;
        for (int poll = 0; poll < 3; ++poll) {
            job = Exchange({"GET", kJobs + jobId}, m_ada).body;
            states += Between(job, "<Status>", "<");
        }
        return states + " " + Between(job, "<Details>", "<");
    }

    service::ReferenceService m_service{{.patternFiles = {{"Huge.bin", 1099511627776}}}};
    std::string m_ada, m_ben;      // Sessions of the administrator and of the plain user.
    std::string m_bridge, m_notes; // A folder of projects and a file in it.
};

TEST_F(Service, SignInTakesThePasswordAndThenATokenOnce) {
    const Request token =
        TokenPost("userName=Zo%C3%AB+%26+S%C3%B8n&password=p%26ss%3Dw%2Brd+100%25+%C3%BC");
    const Request spare = TokenPost("userName=ada&password=ada-secret");
    const HttpReply back = Exchange(token);
    EXPECT_EQ(back.status, 302);
    EXPECT_EQ(back.headers.at(0), std::pair("Location"s, "http://localhost/"s));
    for (std::size_t i = 1; i <= 2; ++i) {
        EXPECT_TRUE(back.headers.at(i).second.ends_with("; Path=/; SameSite=Strict"));
    }
    EXPECT_EQ(Exchange(token).status, 403) << "a token is good once";

    for (const char* wrong :
         {"userName=ada&password=ben-secret", "userName=ADA&password=ada-secret"}) {
        EXPECT_EQ(Between(Exchange(CredentialPost(wrong)).body, "<failureMessage>", "<"),
                  "The user name or password is incorrect.");
    }
    Request forged = spare, elsewhere = spare;
    char& digit = forged.body[forged.body.find("%3C%2FValue") - 1];
    digit = digit == '0' ? '1' : '0';
    elsewhere.body += "0";
    for (const Request& wrong : {forged, elsewhere}) {
        EXPECT_EQ(Exchange(wrong).status, 403);
    }
    EXPECT_EQ(Exchange(spare).status, 403) << "spent by the attempt with another context";
}

TEST_F(Service, EveryCallNeedsBothCookiesOfALivingSession) {
    const auto fedAuth = Between(m_ada, "", ";"), fedAuth1 = m_ada.substr(fedAuth.size() + 1);
    const std::string mixed = fedAuth + m_ben.substr(m_ben.find(';'));
    const Request identity{"GET", "/application/identity"};
    for (const std::string& cookies : {fedAuth, fedAuth1, mixed, m_ada + "0"}) {
        Check(cookies, {{identity, 403, kDenied}});
    }
    Check("theme=dark;" + fedAuth1 + ";" + fedAuth + "; x", {{identity, 200, ""}});
    Check(m_ada, {{{"GET", "/SignOut"}, 200, ""}});
    std::set<std::string_view> open;
    for (const service::Resource& resource : m_service.Resources()) {
        if (resource.access == service::Access::SignedIn) {
            EXPECT_FALSE(resource.reply.empty()) << resource.pattern;
            Check(m_ada, {{{std::string(resource.method), "/" + std::string(resource.pattern)},
                           403,
                           kDenied}});
        } else {
            open.insert(resource.pattern);
        }
    }
    EXPECT_EQ((std::set<std::string_view>{"", "federation", "portal/login"}), open);
    const HttpRequest upload{"PUT", "/Repository/Files/1", {}, {{"Host", "localhost"}}, {}};
    EXPECT_THROW(m_service.Admit(upload), service::ServiceError) << "before its body is read";
}

TEST_F(Service, NothingChangesForThoseWhoMayNot) {
    const std::string templates(service::Repository::kTemplateRootId);
    const std::string folder = Find(templates, "Reports");
    const std::string file = Find(folder, "Übergabe.template");
    const std::string before = Exchange(List(folder), m_ada).body;
    Check(m_ben, {{SetLocked(m_notes, "true"), 200, ""}});
    for (const service::Resource& resource : m_service.Resources()) {
        if (resource.access == service::Access::SignedIn && resource.method != "GET") {
            std::set<int> statuses;
            for (const std::string& item : {folder, file}) {
                statuses.insert(Exchange(Documented(resource, item), m_ben).status);
            }
            // What is for folders alone refuses a file for what it is, and the other way round.
            EXPECT_TRUE(statuses.contains(403) && *statuses.begin() >= 400) << resource.pattern;
            // A file is no folder, whoever has it.
            const HttpReply held = Exchange(Documented(resource, m_notes), m_ada);
            EXPECT_TRUE(held.status == 409 || Between(held.body, "<Message>", "</Message>") ==
                                                  "Requested item is not a folder.")
                << resource.pattern << ", checked out to another user";
        }
    }
    EXPECT_EQ(before, Exchange(List(folder), m_ada).body);
}

TEST_F(Service, RefusesWhatPagesOfOthersSend) {
    const std::string away = "The host must be localhost, 127.x.x.x or [::1].";
    const std::string foreign = "Another web site sent this request.";
    const auto from = [](const std::string& host, const std::string& origin) {
        return Request{"GET", "/Application/Identity", {}, {{"Host", host}, {"Origin", origin}}};
    };
    Check(m_ada, {{from("LocalHost:80", ""), 200, ""},
                  {from("127.1.2.3", "http://127.1.2.3"), 200, ""},
                  {from("[::1]:8080", "http://[::1]:8080"), 200, ""},
                  {from("localhost.example", ""), 421, away},
                  {from("127.0.0.1.example:80", "http://127.0.0.1.example:80"), 421, away},
                  {from("localhost", "http://localhost:81"), 403, foreign},
                  {from("localhost", "https://localhost"), 403, foreign},
                  {from("localhost", "null"), 403, foreign}});
}

TEST_F(Service, RefusalsHaveTheirStatusAndText) {
    const std::string path = "/rePOSitory/items/" + kProjectRoot + "/ITEMS";
    const std::string convert = "Error converting value &quot;1&quot; to type 'Guid'. Path ";
    const std::string malformed = "The multipart body is malformed: the last boundary is missing.";
    Request form = SetLocked(m_notes, "true"), nothing = Upload(m_bridge, "", ""), part = nothing;
    form.headers = kFormType;
    nothing.body = "";
    part.body.resize(part.body.size() - 9);
    Check(
        m_ada,
        {{{"GET", path}, 200, ""},
         {{"PUT", path}, 405, "The resource does not know this method."},
         {List(m_notes), 400, "Requested item is not a folder."},
         {Download(m_bridge), 400, "Specified item is not a file."},
         {Create(m_bridge, "F"), 200, ""},
         {Create(m_bridge, "f"), 409, "The destination already contains a folder named 'f'."},
         {SetLocked(m_bridge, "true"), 400, "Cannot check-out or check-in folders."},
         {SetLocked(m_notes, "false"), 409, "Item already checked in."},
         {SetLocked(m_notes, "true,\"F\":1"), 400, "Member 'F' is unknown."},
         {form, 415, "The body must be application/json."},
         {Upload(m_bridge, "a.template", "x"), 400, "Cannot add templates to project repository."},
         {nothing, 400, "No files found."},
         {part, 400, malformed},
         {Delete("1"), 400, convert + "'ItemIds[0]'."},
         {Delete(m_notes + "\",\"12345678-9abc-def0-1234-56789abcdef0"), 404, kNotFound}});
    Check(m_ben, {{SetLocked(m_notes, "true"), 200, ""},
                  {SetLocked(m_notes, "true"), 409, "Item already checked out."}});
    for (const Request& call : {SetLocked(m_notes, "false"), Delete(m_bridge)}) {
        Check(m_ada, {{call, 409, "Item checked out to another user."}});
    }
    Check(m_ben, {{Delete(m_bridge), 200, ""}, {Download(m_notes), 404, kNotFound}});
}

TEST_F(Service, JobsEndInDownloadsOrFail) {
    const std::string content = "\r\n--Se \r\n--" + std::string(500'000, '\xFE');
    const std::string name = "Neu — 新.dat", provided = "013 The provided file ('";
    const std::string job = Begin(Upload(m_bridge, name, content));
    Check(m_ben, {{{"GET", kJobs + job}, 404, kNotFound}});
    const std::string rival = Begin(Upload(m_bridge, name, "later"));
    EXPECT_EQ(Find(m_bridge, name), "");
    const std::string end = Finish(job);
    EXPECT_EQ(end, "012 " + Find(m_bridge, name));
    const HttpReply file = Exchange(Download(end.substr(4) + "?chunked=1"), m_ben);
    EXPECT_TRUE(file.chunked && file.body == content);
    EXPECT_EQ(Finish(rival), "013 There is an item with the same name already in this location.");
    EXPECT_EQ(Finish(Begin(Overwrite(m_notes, "N.txt", ""))), provided + "N.txt') is empty.");
    EXPECT_EQ(Finish(Begin(Overwrite(m_notes, "my copy.TXT", "second"))), "012 " + m_notes);
    EXPECT_EQ(Exchange(Download(m_notes), m_ben).body, "second");
}

TEST_F(Service, DownloadsAnswerRanges) {
    const std::string text = "Span 3 needs a second look.\n", huge = Find(kProjectRoot, "Huge.bin");
    const std::string date = "Mon, 04 Mar 2024 16:05:12 GMT";
    const std::string tag = Header(Exchange(Download(m_notes), m_ada), "ETag");
    const auto get = [this](const std::string& id, const char* range,
                            const std::string& condition) {
        Request request = Download(id);
        request.headers = {{"Range", range}, {"If-Range", condition}};
        const HttpReply reply = Exchange(request, m_ada);
        return std::to_string(reply.status) + " " + Header(reply, "Content-Range") + "|" +
               (reply.file ? reply.body : "");
    };
    EXPECT_EQ(get(m_notes, "bytes=5-", ""), "206 bytes 5-27/28|" + text.substr(5));
    EXPECT_EQ(get(m_notes, "bytes=0-3", tag), "206 bytes 0-3/28|Span");
    EXPECT_EQ(get(m_notes, "bytes=27-99", date), "206 bytes 27-27/28|\n");
    EXPECT_EQ(get(m_notes, "bytes=28-", ""), "416 bytes */28|");
    EXPECT_EQ(get(huge, "bytes=1099511627775-", ""),
              "206 bytes 1099511627775-1099511627775/1099511627776|\xE0");
    for (const char* other :
         {"bytes=-4", "bytes=0-1,3-4", "bytes=3-2", "bytes=0-18446744073709551616"}) {
        EXPECT_EQ(get(m_notes, other, ""), "200 |" + text);
    }
    Finish(Begin(Overwrite(m_notes, "N.txt", "second")));
    for (const std::string& old : {tag, date}) {
        EXPECT_EQ(get(m_notes, "bytes=0-3", old), "200 |second");
    }
}

TEST_F(Service, MisbehavesAsItIsTold) {
    service::Misbehaviour misbehaviour;
    for (const char* text : {"unavailable=7", "requests=1"}) {
        service::ReadMisbehaviour(text, misbehaviour);
    }
    m_service.Misbehave(misbehaviour);
    Check(m_ada, {{List(m_bridge), 200, ""}});
    const HttpReply busy = Exchange(Upload(m_bridge, "a.txt", "x"), m_ada);
    EXPECT_EQ(std::pair(busy.status, Header(busy, "Retry-After")), std::pair(503, "7"s));
    Check(m_ada, {{Upload(m_bridge, "a.txt", "x"), 200, ""}});

    m_service.Misbehave({.changesFile = true});
    const std::string tag = Header(Exchange(Download(m_notes), m_ada), "ETag");
    EXPECT_NE(Header(Exchange(Download(m_notes), m_ada), "ETag"), tag);
    m_service.Misbehave({.breakAfter = 5, .endsSession = true});
    const HttpRequest head{.method = "GET",
                           .path = Download(m_notes).target,
                           .headers = {{"Host", "localhost"}, {"Cookie", m_ada}}};
    EXPECT_EQ(m_service.Admit(head).misbehaviour.breakAfter, 5u);
    Check(m_ada, {{List(m_bridge), 403, kDenied}});
    for (const char* wrong :
         {"", "cut", "cut=", "cut=-1", "cut=18446744073709551616", "changed=1"}) {
        EXPECT_THROW(service::ReadMisbehaviour(wrong, misbehaviour), std::invalid_argument);
    }
}

TEST(TemporaryFile, GoesWithItsObject) {
    const TempFolder folder;
    const auto usual = folder.Folder().parent_path();
    for (const auto& [path, place] : {std::pair(folder.Folder(), "there"), {usual, "back again"}}) {
        SetVariable("TMPDIR", path.string());
        SetVariable("TMP", path.string());
        service::TemporaryFile().Append(place);
        EXPECT_TRUE(std::filesystem::is_empty(folder.Folder()));
    }
}

} // namespace
} // namespace brevint::test

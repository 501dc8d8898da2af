#include "base/Hex.h"
#include "service/Blob.h"
#include "service/ReferenceService.h"

#include <boost/algorithm/string/replace.hpp>
#include <gtest/gtest.h>

namespace brevint::test {
namespace {

using namespace std::string_literals;
using service::HttpReply;
using service::HttpRequest;

const service::HttpHeaders formType = {{"Content-Type", "application/x-www-form-urlencoded"}};
const service::HttpHeaders multipartType = {{"Content-Type", "multipart/form-data; boundary=Sep"}};
const std::string denied = "Authorization failed.";
const std::string notFound = "Requested item not found.";
const std::string projectRoot(service::Repository::projectRootId);
const std::string items = "/Repository/Items/", jobs = "/Repository/Jobs/";

struct Request {
    std::string method, target, body = {};
    service::HttpHeaders headers = {}; ///< Without a Host it is "localhost".
};

/// The text of the error document is "" when the call does not fail.
struct Case {
    Request request;
    int status;
    std::string text;
};

/// The text that stands between `open` and the next `close`; "" when there is none.
std::string Between(std::string_view text, std::string_view open, std::string_view close) {
    const auto start = text.find(open);
    if (start == std::string_view::npos)
        return {};
    text.remove_prefix(start + open.size());
    return std::string(text.substr(0, text.find(close)));
}

/// A service of its own for each test, and what a client does with it.
class Service : public ::testing::Test {
protected:
    Service() {
        ada_ = Cookies(Exchange(TokenPost("userName=ada&password=ada-secret")));
        ben_ = Cookies(Exchange(TokenPost("userName=ben&password=ben-secret")));
        bridge_ = Find(projectRoot, "Bridge");
        notes_ = Find(bridge_, "Notes.txt");
    }

    static Request List(const std::string& id) { return {"GET", items + id + "/Items"}; }
    static Request Download(const std::string& id) { return {"GET", "/Repository/Files/" + id}; }

    static Request Create(const std::string& parent, const std::string& name) {
        return {"POST", List(parent).target, "{\"ItemType\":0,\"Name\":\"" + name + "\"}"};
    }

    static Request SetLocked(const std::string& id, const std::string& locked) {
        return {"PUT", items + id + "/Locked",
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
        return {"POST", items + parent + "/Files", Multipart(name, content), multipartType};
    }

    static Request Overwrite(const std::string& id, const std::string& name,
                             const std::string& content) {
        return {"PUT", Download(id).target, Multipart(name, content), multipartType};
    }

    /// `cookies` is the value of the Cookie header.
    HttpReply Exchange(const Request& request, const std::string& cookies = {}) const {
        HttpRequest message{request.method, Between(request.target, "", "?"),
                            Between(request.target, "?", "#"), request.headers, ""};
        message.headers.emplace_back("Cookie", cookies);
        if (message.Header("Host").empty())
            message.headers.emplace_back("Host", "localhost");
        const service::Admission admission = service_.Admit(message);
        message.body = request.body;
        HttpReply reply = admission.refusal ? *admission.refusal : admission.answer(message);
        if (reply.file) {
            reply.body.resize(reply.file->Size());
            reply.file->Read(0, reply.body.data(), reply.body.size());
        }
        return reply;
    }

    void Check(const std::string& cookies, const std::vector<Case>& cases) const {
        for (const auto& [request, status, text] : cases) {
            const HttpReply reply = Exchange(request, cookies);
            EXPECT_EQ(Between(reply.body, "<Message>", "</Message>"), text);
            EXPECT_EQ(reply.status, status)
                << request.method << " " << request.target << " " << request.body.substr(0, 200)
                << ::testing::PrintToString(request.headers);
        }
    }

    /// Posts to the portal, at the address that the dashboard's redirect names.
    Request CredentialPost(const std::string& form) const {
        const std::string location = Exchange({"GET", "/"}).headers.at(0).second;
        return {"POST", location.substr(location.find("/portal")), form, formType};
    }

    /// What the page of a successful sign-in posts to the federation endpoint.
    Request TokenPost(const std::string& credentials) const {
        const std::string page = Exchange(CredentialPost(credentials)).body;
        std::string form = "request=sign-in";
        for (const std::string field : {"token", "context"}) {
            std::string value = Between(page, "name=\"" + field + "\" value=\"", "\"");
            // "&amp;" last, so that what it yields is not unescaped again.
            for (const auto& [entity, character] :
                 {std::pair("&lt;", "<"), {"&gt;", ">"}, {"&quot;", "\""}, {"&amp;", "&"}})
                boost::replace_all(value, entity, character);
            form += "&" + field + "=" + base::PercentEncode(value);
        }
        return {"POST", "/federation", form, formType};
    }

    /// What a client sends that has the cookies of a sign-in.
    static std::string Cookies(const HttpReply& signedIn) {
        return Between(signedIn.headers.at(1).second, "", ";") + "; " +
               Between(signedIn.headers.at(2).second, "", ";");
    }

    /// The id of the item of that name in the folder.
    std::string Find(const std::string& folderId, const std::string& name) const {
        const std::string list = Exchange(List(folderId), ada_).body;
        const std::string head = list.substr(0, list.find("<Name>" + name + "</Name>"));
        return head == list ? "" : Between(head.substr(head.rfind("<Item>")), "<UniqueId>", "<");
    }

    std::string Begin(const Request& upload) const {
        return Between(Exchange(upload, ada_).body, "<JobId>", "<");
    }

    /// Polls the job to its end; gives the states that it went through and its details.
    std::string Finish(const std::string& jobId) const {
        std::string states, job;
        for (int poll = 0; poll < 3; ++poll) {
            job = Exchange({"GET", jobs + jobId}, ada_).body;
            states += Between(job, "<Status>", "<");
        }
        return states + " " + Between(job, "<Details>", "<");
    }

    service::ReferenceService service_;
    std::string ada_, ben_;      ///< Sessions of the administrator and of the plain user.
    std::string bridge_, notes_; ///< A folder of projects and a file in it.
};

TEST_F(Service, SignInTakesThePasswordAndThenATokenOnce) {
    const Request token =
        TokenPost("userName=Zo%C3%AB+%26+S%C3%B8n&password=p%26ss%3Dw%2Brd+100%25+%C3%BC");
    const Request spare = TokenPost("userName=ada&password=ada-secret");
    const HttpReply back = Exchange(token);
    EXPECT_EQ(back.status, 302);
    EXPECT_EQ(back.headers.at(0), std::pair("Location"s, "http://localhost/"s));
    for (std::size_t i = 1; i <= 2; ++i)
        EXPECT_TRUE(back.headers.at(i).second.ends_with("; Path=/; SameSite=Strict"));
    const std::string identity = Exchange({"GET", "/application/identity"}, Cookies(back)).body;
    EXPECT_EQ(Between(identity, "<Name>", "<"), "Zoë &amp; Søn");
    EXPECT_EQ(Exchange(token).status, 403) << "a token is good once";

    for (const char* wrong : {"userName=ada&password=ben-secret", "userName=no&password=ada-secret",
                              "userName=%61da&password=", "userName=ADA&password=ada-secret"})
        EXPECT_EQ(Between(Exchange(CredentialPost(wrong)).body, "<failureMessage>", "<"),
                  "The user name or password is incorrect.");
    Request forged = spare;
    char& digit = forged.body[forged.body.find("%3C%2FValue") - 1];
    digit = digit == '0' ? '1' : '0';
    EXPECT_EQ(Exchange(forged).status, 403);
    forged.body = spare.body + "0";
    EXPECT_EQ(Exchange(forged).status, 403);
    EXPECT_EQ(Exchange(spare).status, 403) << "spent by the attempt with another context";
}

TEST_F(Service, EveryCallNeedsBothCookiesOfALivingSession) {
    const std::string fedAuth = Between(ada_, "", ";"), fedAuth1 = ada_.substr(fedAuth.size() + 1);
    const std::string mixed = fedAuth + ben_.substr(ben_.find(';'));
    const Request identity{"GET", "/application/identity"};
    for (const std::string& cookies : {fedAuth, fedAuth1, mixed, ada_ + "0"})
        Check(cookies, {{identity, 403, denied}});
    Check("theme=dark;" + fedAuth1 + ";" + fedAuth + "; x", {{identity, 200, ""}});
    Check(ada_, {{{"GET", "/SignOut"}, 200, ""}});
    for (const std::string call :
         {"GET /application/identity", "GET /Application/Versions", "GET /Analysis/Types",
          "GET /SignOut", "GET /Repository/Items/1/Items", "POST /Repository/Items/1/Items",
          "GET /Repository/Items/1/Path", "PUT /Repository/Items/1/Locked",
          "POST /Repository/Items/1/Files", "DELETE /Repository/Items", "GET /Repository/Files/1",
          "PUT /Repository/Files/1", "GET /Repository/Jobs/1"})
        Check(ada_, {{{Between(call, "", " "), Between(call, " ", "\n")}, 403, denied}});
    const HttpRequest upload{"PUT", "/Repository/Files/1", {}, {{"Host", "localhost"}}, {}};
    EXPECT_TRUE(service_.Admit(upload).refusal) << "before its body is read";
}

TEST_F(Service, RefusesWhatPagesOfOthersSend) {
    const std::string away = "The host must be localhost, 127.x.x.x or [::1].";
    const std::string foreign = "Another web site sent this request.";
    const auto from = [](const std::string& host, const std::string& origin) {
        return Request{"GET", "/Application/Identity", {}, {{"Host", host}, {"Origin", origin}}};
    };
    Check(ada_, {{from("LocalHost:80", ""), 200, ""},
                 {from("127.1.2.3", "http://127.1.2.3"), 200, ""},
                 {from("[::1]:8080", "http://[::1]:8080"), 200, ""},
                 {from("localhost.example", ""), 421, away},
                 {from("127.0.0.1.example:80", "http://127.0.0.1.example:80"), 421, away},
                 {from("localhost", "http://localhost:81"), 403, foreign},
                 {from("localhost", "https://localhost"), 403, foreign},
                 {from("localhost", "null"), 403, foreign}});
}

TEST_F(Service, RefusalsHaveTheirStatusAndText) {
    const std::string path = "/rePOSitory/items/" + projectRoot + "/ITEMS";
    const std::string templates(service::Repository::templateRootId);
    Check(ada_,
          {{{"GET", path}, 200, ""},
           {{"PUT", path}, 405, "The resource does not know this method."},
           {List(notes_), 400, "Requested item is not a folder."},
           {Download(bridge_), 400, "Specified item is not a file."},
           {Create(bridge_, "F"), 200, ""},
           {Create(bridge_, "f"), 409, "The destination already contains a folder named 'f'."},
           {SetLocked(bridge_, "true"), 400, "Cannot check-out or check-in folders."},
           {SetLocked(notes_, "false"), 409, "Item already checked in."},
           {Upload(bridge_, "a.template", "x"), 400, "Cannot add templates to project repository."},
           {Delete(notes_ + "\",\"12345678-9abc-def0-1234-56789abcdef0"), 404, notFound}});
    Check(ben_, {{SetLocked(notes_, "true"), 200, ""},
                 {SetLocked(notes_, "true"), 409, "Item already checked out."},
                 {Create(templates, "New"), 403, denied},
                 {Delete(Find(templates, "Reports")), 403, denied}});
    for (const Request& call : {SetLocked(notes_, "false"), Delete(bridge_)})
        Check(ada_, {{call, 409, "Item checked out to another user."}});
    Check(ben_, {{Delete(bridge_), 200, ""}, {Download(notes_), 404, notFound}});
}

TEST_F(Service, BodiesAreReadStrictly) {
    const std::string whole = Multipart("a.txt", "x"), convert = "Error converting value ";
    Request form = SetLocked(notes_, "true"), text = form;
    form.headers = formType;
    text.headers = {{"Content-Type", "text/plain"}};
    Check(ada_,
          {{form, 415, "The body must be application/json."},
           {text, 415, "The body must be application/json."},
           {Delete("1"), 400, convert + "&quot;1&quot; to type 'Guid'. Path 'ItemIds[0]'."},
           {SetLocked(notes_, "true,\"F\":1"), 400, "Member 'F' is unknown."},
           {{"POST", items + bridge_ + "/Files", "", multipartType}, 400, "No files found."},
           {{"POST", items + bridge_ + "/Files", whole.substr(0, whole.size() - 9), multipartType},
            400,
            "The multipart body is malformed: the last boundary is missing."}});
}

TEST_F(Service, JobsEndInDownloadsOrFail) {
    const std::string content = "\r\n--Se \r\n--" + std::string(500'000, '\xFE');
    const std::string name = "Neu — 新.dat", provided = "013 The provided file ('";
    const std::string job = Begin(Upload(bridge_, name, content));
    Check(ben_, {{{"GET", jobs + job}, 404, notFound}});
    const std::string rival = Begin(Upload(bridge_, name, "later"));
    EXPECT_EQ(Find(bridge_, name), "");
    const std::string end = Finish(job);
    EXPECT_EQ(end, "012 " + Find(bridge_, name));
    const HttpReply file = Exchange(Download(end.substr(4) + "?chunked=1"), ben_);
    EXPECT_TRUE(file.chunked && file.body == content);
    EXPECT_EQ(Finish(rival), "013 There is an item with the same name already in this location.");
    EXPECT_EQ(Finish(Begin(Overwrite(notes_, "N.txt", ""))), provided + "N.txt') is empty.");
    EXPECT_EQ(Finish(Begin(Overwrite(notes_, "my copy.TXT", "second"))), "012 " + notes_);
    EXPECT_EQ(Exchange(Download(notes_), ben_).body, "second");
}

} // namespace
} // namespace brevint::test

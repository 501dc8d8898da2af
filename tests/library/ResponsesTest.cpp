#include "support/Xml.h"
#include "tests/library/Helpers.h"
#include "tests/support/ResponseKinds.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>

namespace brevint::test {
namespace {

struct Case {
    unsigned long status;
    std::string content; ///< of ResponseData; after "!" the whole reply
    double code;
    std::wstring detail;
};

/// Fills a response of its own with each reply, and reads it twice. What comes after that makes a
/// reply that is not XML, and leaves no record of the one before.
void Check(std::string_view kind, std::span<const Case> cases) {
    const auto& [name, make, detail, parses] = *FindKind(kind);
    for (const Case& test : cases) {
        SCOPED_TRACE(test.content);
        const auto response = make();
        EXPECT_EQ(response->GetErrorCode(), 1100);
        Fill(*response,
             test.content.starts_with('!') ? test.content.substr(1) : Document(test.content),
             test.status);
        EXPECT_EQ(response->GetErrorCode(), test.code);
        EXPECT_EQ(response->GetSucceeded(), test.code == 1101);
        EXPECT_EQ(detail(*response), test.detail);
        EXPECT_EQ(detail(*response), test.detail);
        Fill(*response, "<", test.status);
        EXPECT_EQ(response->GetErrorCode(), 1104);
        EXPECT_TRUE((kind != "GetFolderContents" && kind != "Template") ||
                    detail(*response).empty());
    }
}

const std::string kDenied = "<Message>Authorization failed.</Message>";

TEST(Responses, IdentityTellsUserAndRole) {
    const std::string named = "<IdentifyingPartyUri>http://p/\xC3\xA9?a&amp;b"
                              "</IdentifyingPartyUri><Name>J. D\xC3\xB6rr</Name>";
    const std::wstring name = L"|J. D\u00f6rr|http://p/\u00e9?a&b";
    for (const unsigned long status : {200ul, 500ul}) {
        const Case cases[] = {
            {status, named + "<IsAdmin>TRUE</IsAdmin><IsUser>true</IsUser>", 1101, L"1" + name},
            {status, named + "<IsAdmin>false</IsAdmin><IsUser>True</IsUser>", 1101, L"2" + name},
            {status, named + kDenied + "<IsUser>true</IsUser>", 1101, L"2" + name},
            {status, named + "<IsAdmin>false</IsAdmin><IsUser>false</IsUser>", 1702, L"0" + name},
            {status, named + "<IsAdmin>1</IsAdmin><IsUser> true</IsUser>", 1702, L"0" + name},
            {status, named, 1702, L"0" + name},
            {status, "<Name>n</Name><IsUser>true</IsUser>", 1701, L"0||"},
            {status, "<IdentifyingPartyUri/><IsUser>true</IsUser>", 1703, L"0||"},
            {status, kDenied, 1701, L"0||"},
            {status, "!", 1104, L"0||"},
        };
        Check("Identity", cases);
    }
}

TEST(Responses, TemplatesAreListed) {
    const Case cases[] = {
        {404,
         "<Item><UniqueId>i</UniqueId><Created>c</Created><CreatedBy>cb</CreatedBy>"
         "<Category>ca</Category><Description>d</Description><Name>n</Name>"
         "<TemplateKey>k</TemplateKey></Item><x><Item><Name>deep</Name></Item></x>",
         1101, L"n|i|k|c|cb|d|ca;deep||||||;"},
        // Entities of the text itself are resolved, those of the document are before.
        {200,
         "!<Item><Name>R&amp;amp;D &amp;lt;\xC3\xA9&amp;eacute;&amp;#x1D11E; &amp;x;</Name>"
         "<Description><![CDATA[&quot;a&quot;<b>]]></Description></Item>",
         1101, L"R&D <\u00e9\u00e9\U0001d11e &x;|||||\"a\"<b>|;"},
        {200, kDenied, 1103, L""},
    };
    Check("Template", cases);
    EXPECT_EQ(Detail(CTemplateInfo(L"n", L"i", L"k", L"c", L"cb", L"d", L"ca")),
              L"n|i|k|c|cb|d|ca;");
}

TEST(Responses, FolderItemsAreFilledFromTheirElements) {
    const auto named = [](const std::wstring& name) {
        return L"|||" + name + L"||||||||lockedpublic;";
    };
    const Case cases[] = {
        {500,
         "<Item><Size>wrong</Size><UniqueId>u</UniqueId><ParentId>p</ParentId><OwnerId>o</OwnerId>"
         "<Name>n</Name><Description>d</Description><DateCreated>dc</DateCreated>"
         "<DateModified>dm</DateModified><Data><Name>wrong</Name></Data><Data><Size>5</Size></Data>"
         "<Locked>false</Locked><LockedBy>lb</LockedBy><IsPublic>true</IsPublic>"
         "<ItemType>it</ItemType><ItemTypeDescription>itd</ItemTypeDescription>"
         "<Item><Name>nested</Name></Item></Item><Item/><List><Item/></List>",
         1101, L"u|p|o|n|d|dc|dm|5|lb|it|itd|public;" + named(L"")},
        {200,
         "\n  <Item>\n    <Name>long name</Name>\n  </Item>\n  x<![CDATA[y]]>\n"
         "  <Item><Name>b</Name></Item>\n  <Item/>\n",
         1101, named(L"long name") + named(L"b") + named(L"")},
        {200, "!<Other><Item/></Other>", 1101, L""},
        {200, "<Item><Name>" + std::string().append(10'000'001, 'x') + "</Name></Item>", 1104, L""},
        {200, "<Message>Requested item is not a folder.</Message><Item/>", 1402, named(L"")},
    };
    Check("GetFolderContents", cases);
}

TEST(Responses, FolderItemIsMadeFromAnElement) {
    const XmlDocPtr document(
        ParseXML("<r><i><Name>n</Name><Name>2</Name><Data><Size>5</Size></Data>"
                 "<Locked>f</Locked></i></r>"));
    const CGetFolderContentsResponse response;
    _xmlNode* const item = SimpleDoXPath("/r/i", document.get());
    const std::unique_ptr<CFolderItem> record(response.GetFolderItemFromNode(item));
    EXPECT_EQ(Detail(*record), L"|||n||||5||||public;");
    const std::unique_ptr<CFolderItem> empty(response.GetFolderItemFromNode(nullptr));
    EXPECT_EQ(Detail(*empty), L"|||||||||||lockedpublic;");
    EXPECT_EQ(response.GetValueFromChildNode(item, "Name"), L"n");
    EXPECT_EQ(response.GetValueFromChildNode(item, "Data/Size"), L"");
    EXPECT_EQ(response.GetValueFromChildNode(item, nullptr), L"");
    EXPECT_EQ(response.GetValueFromChildNode(nullptr, "Name"), L"");
}

TEST(Responses, FlagOfAFolderItemIsTrueUnlessItHoldsALetterF) {
    const std::pair<std::string, bool> flags[] = {
        {"false", false},  {"true", true},     {"False", true},     {"FALSE", true},
        {"off", false},    {"0", true},        {"no", true},        {"", true},
        {"&#102;", false}, {"<!--f-->", true}, {"<b>f</b>", false}, {"<![CDATA[false]]>", false}};
    for (const auto& [text, flag] : flags) {
        const Case cases[] = {{200, "<Item><Locked>" + text + "</Locked></Item>", 1101,
                               flag ? L"|||||||||||lockedpublic;" : L"|||||||||||public;"},
                              {200, "<Item><IsPublic>" + text + "</IsPublic></Item>", 1101,
                               flag ? L"|||||||||||lockedpublic;" : L"|||||||||||locked;"}};
        Check("GetFolderContents", cases);
    }
}

TEST(Responses, PathIsReadWhenTheStatusIs200) {
    const std::string path = "<Path>/\xC3\xA9 &amp; b/</Path>";
    const Case cases[] = {{200, path, 1101, L"/\u00e9 & b/"},
                          {404, path, 1101, L""},
                          {200, kDenied, 1101, L""},
                          {404, kDenied, 1103, L""}};
    Check("Path", cases);
}

TEST(Responses, JobIsNamed) {
    const Case cases[] = {
        {200, "<JobId>\xC3\xA9-1</JobId><JobId>2</JobId>", 1101, L"\u00e9-1|"},
        {200, "<JobId/>", 1101, L"|"},
        {200, "<x><JobId>1</JobId></x>", 1610, L"|"},
        {200, kDenied, 1610, L"|"},
        {201, "<JobId>1</JobId>", 1100, L"|"},
        {400, kDenied, 1103, L"|Authorization failed."},
        {400, "<JobId>1</JobId><Message>Oops</Message>", 1100, L"|Oops"},
    };
    Check("UploadFile", cases);
    Check("OverwriteFile", cases);
}

/// Checks a kind of poll; the kinds differ in two codes.
void CheckPoll(std::string_view kind, double notFound, double fileRejected) {
    const Case cases[] = {
        {200, "<Status>0</Status>", 1101, L"0|"},
        {200, "<Status>1</Status><Details>x</Details>", 1101, L"0|"},
        {200, "<Status>2</Status><Details>a<!-- b -->c</Details>", 1101, L"1|ac"},
        {200, "<Status><![CDATA[2]]></Status><Details/>", 1101, L"1|"},
        {200, "<Status>2</Status>", 1104, L"2|"},
        {200, "<Status>3</Status><Details>Requested item not found.</Details>", notFound, L"2|"},
        {200, "<Status>3</Status><Details>The provided file ('a.doc') is bad</Details>",
         fileRejected, L"2|"},
        {200, "<Status>3</Status><Details>Oops</Details>", 1100, L"2|"},
        {200, "<Status>3</Status>", 1100, L"2|"},
        {200, "<Status>4</Status>", 1104, L"2|"},
        {200, "<Status> 2</Status><Details>abc</Details>", 1104, L"2|"},
        {200, "<Status>02</Status><Details>abc</Details>", 1104, L"2|"},
        {200, "<Other/>", 1104, L"2|"},
        {200, "<Status>1</Status>" + kDenied, 1101, L"0|"},
        {500, "<Status>1</Status>" + kDenied, 1103, L"2|"},
        {500, "<Status>2</Status><Details>abc</Details>", 1100, L"2|"},
        {202, "<Status>1</Status>", 1100, L"2|"},
        {200, "!", 1102, L"2|"},
    };
    Check(kind, cases);
    const auto failed = FindKind(kind)->make();
    Fill(*failed, Document("<Status>3</Status><Details>Oops</Details>"));
    EXPECT_EQ(failed->GetServerErrorMessage(), L"Oops");
}

TEST(Responses, PollTellsTheStateOfTheJob) {
    CheckPoll("PollUploadStatus", 1602, 1605);
    CheckPoll("PollOverwriteStatus", 1502, 1505);
}

/// A response with a table of its own.
class TestResponse : public CBaseResponse {
public:
    TestResponse() {
        const ErrorRow exact[] = {
            {L"authorization failed.", 1}, {L"authorization failed.", 2}, {L"ab exact", 3}};
        AddExactMessages(exact);
        const ErrorRow prefixes[] = {{L"abc", 12}, {L"ab", 11}};
        AddMessagePrefixes(prefixes);
    }
};

std::string Reply(const std::string& message) {
    return Document("<Message>" + message + "</Message>");
}

TEST(BaseResponse, JudgesTheReplyByItsTextAlone) {
    const struct {
        std::string reply;
        double code;
        const wchar_t* message = L"";
    } cases[] = {
        {"", 1102},
        {std::string("\0<ResponseData/>", 16), 1102},
        {"<html><body><form/></body></html>", 1101}, // XML is all that is asked
        {"<Other><Message>authorization failed.</Message></Other>", 1101},
        {"<ResponseData/>" + std::string("\0 garbage", 9), 1101},
        {Reply(""), 1100},
        {Reply("<![CDATA[authorization]]><!-- c --> failed&#46;"), 1, L"authorization failed."},
        {Reply("a</Message><Message>authorization failed."), 1100, L"a"},
        {Reply("&lt;\xC3\x89 \xF0\x9D\x84\x9E \xFF&gt;"), 1100, L"<\u00c9 \U0001d11e \ufffd>"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.reply.substr(0, 100));
        for (const unsigned long status : {200ul, 0ul, 500ul}) {
            TestResponse response;
            Fill(response, test.reply, status);
            EXPECT_EQ(response.GetErrorCode(), test.code);
            EXPECT_EQ(response.GetSucceeded(), test.code == 1101);
            EXPECT_EQ(response.GetServerErrorMessage(), test.message);
            EXPECT_EQ(response.GetStatusCode(), status);
            EXPECT_EQ(response.GetServerResponse(), Bytes(test.reply));
        }
    }
}

TEST(BaseResponse, LooksMessagesUpWholeThenByBeginning) {
    const std::pair<const wchar_t*, double> cases[] = {
        {L"Authorization Failed.", 1}, // the first row of the same text
        {L"AB exact", 3},              // whole before beginning
        {L"abc and more", 11},         // "ab" sorts before "abc"
        {nullptr, 1100},
    };
    TestResponse response;
    for (const auto& [message, code] : cases) {
        SCOPED_TRACE(message);
        response.ProcessErrorMessage(message);
        EXPECT_EQ(response.GetErrorCode(), code);
    }
}

TEST(BaseResponse, AppendsWhatComesSecond) {
    TestResponse response;
    Fill(response, "<Response", 200);
    Fill(response, "Data>\xC3\xA9</ResponseData>", 201);
    EXPECT_EQ(response.GetErrorCode(), 1101);
    EXPECT_EQ(response.GetServerResponseAsString(), L"<ResponseData>\u00e9</ResponseData>");
    // Text ends at a zero byte, and a byte-order mark is a character like others.
    const std::string bytes("\xEF\xBB\xBFz\xFF\0b", 7);
    EXPECT_EQ(response.ConvertServerResponseToStringReponse(Bytes(bytes)), L"\ufeffz\ufffd");
}

} // namespace
} // namespace brevint::test

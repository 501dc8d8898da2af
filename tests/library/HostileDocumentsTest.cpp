#include "proxies/PortalForm.h"
#include "support/Text.h"
#include "tests/library/Details.h"
#include "tests/library/Helpers.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

struct Outcome {
    double code;
    std::wstring detail;
    bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
    *out << outcome.code << ' ' << Utf8::ToNarrow(outcome.detail);
}

template <class Response>
Outcome Read(const std::string& reply) {
    Response response;
    Fill(response, reply);
    EXPECT_EQ(response.GetSucceeded(), response.GetErrorCode() == 1101);
    return {response.GetErrorCode(), Detail(response)};
}

/// A kind of response, and where it reads a text: the element, with what must stand around it.
struct Kind {
    const char* name;
    Outcome (*read)(const std::string& reply);
    std::string element;
    std::string before, after;
    Outcome found; ///< "$" stands for the text
    Outcome absent;
    std::wstring unread = {}; ///< the detail of a reply that is no document
};

const Kind kKinds[] = {
    {"message", Read<CDeleteResponse>, "Message", "", "", {1100, L"$"}, {1101, L""}},
    {"path", Read<CPathResponse>, "Path", "", "", {1101, L"$"}, {1101, L""}},
    {"job", Read<CUploadFileResponse>, "JobId", "", "", {1101, L"$|"}, {1610, L"|"}, L"|"},
    {"new", Read<CCreateFolderResponse>, "UniqueId", "", "", {1101, L"$|"}, {1101, L"|"}, L"|"},
    {"version", Read<CVersionInfoResponse>, "Version", "", "", {1101, L"$"}, {1101, L""}},
    {"poll",
     Read<CPollOverwriteStatusResponse>,
     "Details",
     "<Status>2</Status>",
     "",
     {1101, L"1|$"},
     {1104, L"2|"},
     L"2|"},
    {"identity",
     Read<CIdentityResponse>,
     "Name",
     "<IsUser>true</IsUser><IdentifyingPartyUri>p</IdentifyingPartyUri>",
     "",
     {1101, L"2|$|p"},
     {1703, L"0||"},
     L"0||"},
    {"item",
     Read<CGetFolderContentsResponse>,
     "Name",
     "<Item>",
     "</Item>",
     {1101, L"|||$||||||||lockedpublic;"},
     {1101, L"|||||||||||lockedpublic;"}},
    {"template",
     Read<CTemplateResponse>,
     "Name",
     "<Item>",
     "</Item>",
     {1101, L"$||||||;"},
     {1101, L"||||||;"}},
};

std::string Repeat(std::size_t count, const std::string& text) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += text;
    }
    return all;
}

std::string Numbered(std::size_t count, const std::string& before, const std::string& after) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) {
        all += before + std::to_string(i) + after;
    }
    return all;
}

/// Around the markup, in which "@" stands for the element's name.
std::string Document(const Kind& kind, const std::string& markup,
                     const std::string& prologue = {}) {
    std::string text = prologue + "<ResponseData>" + kind.before;
    for (const char character : markup) {
        text += character == '@' ? kind.element : std::string(1, character);
    }
    return text + kind.after + "</ResponseData>";
}

TEST(HostileDocuments, TextIsFoundOrNotWhateverStandsAroundIt) {
    const std::wstring absent = L"(absent)";
    const std::string padding(1'500'000, 'x');
    const std::pair<std::string, std::wstring> cases[] = {
        {"", absent},
        {"<@/>", L""},
        {"<@></@><@>b</@>", L""},
        {"<@>a</@><@>b</@>", L"a"},
        {"<y><@>a</@></y>", absent},
        {"<@><y>a</y><z>b<y/></z></@>", L"ab"},
        {"<x:@ xmlns:x='urn:x'>a</x:@>", absent},
        {"<@ xmlns='urn:x'>a</@>", absent},
        {"<@ xmlns:x='urn:x' x:y='b'>a</@>", L"a"},
        {"<@><!-- b --><![CDATA[<a>]]><?c d?>&lt;&#233;&#x1D11E;</@>", L"<a><\u00e9\U0001d11e"},
        {"<@>&amp;#4294967361;&amp;#x110000;&amp;#0;</@>", L"&#4294967361;&#x110000;&#0;"},
        {"<@>99999999999999999999.9e999</@>", L"99999999999999999999.9e999"},
        {"<@>\xE9\xC3\xA9\xED\xA0\x80</@>", L"\ufffd\u00e9\ufffd"},
        {"<@> \r\n\t</@>", L" \n\t"},
        {"<@>" + padding + "</@>", std::wstring(padding.begin(), padding.end())},
        {"<y>" + padding + "</y><@>a</@>", L"a"},
        {"<y z='" + padding + "'/><@>a</@>", L"a"},
        {"<y " + Numbered(256, " a", "='= b=\"c\" d'") + "/><@>a</@>", L"a"},
        {Repeat(1'000'000, "<y/>") + "<@>a</@>", L"a"},
        {Repeat(200, "<y>") + Repeat(200, "</y>") + "<@>a</@>", L"a"},
    };
    for (const auto& [markup, text] : cases) {
        for (const Kind& kind : kKinds) {
            SCOPED_TRACE(kind.name + (": " + markup.substr(0, 100)));
            Outcome expected = text == absent ? kind.absent : kind.found;
            BaseHlpr::StringReplace(expected.detail, L"$", text.c_str());
            const Outcome outcome = kind.read(Document(kind, markup));
            EXPECT_TRUE(outcome == expected) << testing::PrintToString(outcome).substr(0, 200);
        }
    }
}

TEST(HostileDocuments, ArePlainTextWhateverTheyDeclare) {
    ScriptedServer server;
    const auto url = Utf8::ToNarrow(server.Url("/x.dtd"));
    testing::internal::CaptureStderr();
    for (const std::string& prologue : std::initializer_list<std::string>{
             "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-16\"?>",
             "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" standalone=\"yes\"?>",
             "<?xml version=\"1.0\" encoding=\"no-such-encoding\"?>",
             "<?xml version='1.0'?><?style <!-- -- ?><!-- <a - > --><!DOCTYPE ResponseData>",
             "<!DOCTYPE ResponseData SYSTEM '" + url + "'>",
             "<!DOCTYPE ResponseData PUBLIC '-//x//y' 'file:///etc/passwd'>",
             "<!DOCTYPE ResponseData [<!ELEMENT a ANY><!ATTLIST a b ID #IMPLIED c ID "
             "#IMPLIED>]>"}) {
        for (const Kind& kind : kKinds) {
            SCOPED_TRACE(kind.name + (": " + prologue));
            Outcome expected = kind.found;
            BaseHlpr::StringReplace(expected.detail, L"$", L"\u00e9");
            EXPECT_EQ(kind.read(Document(kind, "<@>\xC3\xA9</@>", prologue)), expected);
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(server.ConnectionCount(), 0u);
}

TEST(HostileDocuments, AreRefusedByEveryKind) {
    const std::string end = "<ResponseData><a/></ResponseData>";
    const auto declaring = [&](const std::string& declarations) {
        return "<!DOCTYPE ResponseData [" + declarations + "]>" + end;
    };
    const std::string documents[] = {
        "plain text",
        "\xEF\xBB\xBF",
        "<!DOCTYPE html><html><head><title>502</title></head><body><hr></body></html>",
        "<ResponseData><y>a&nbsp;</y></ResponseData>",
        "<ResponseData><y>\x01</y></ResponseData>",
        "<ResponseData><y b=c>a</y></ResponseData>",
        "<ResponseData><y>a</y></ResponseData><ResponseData/>",
        "<ResponseData><!-- -- --><y>a</y></ResponseData>",
        "<ResponseData><x:y>a</y></ResponseData>",
        std::string("<ResponseData><y>a\0</y></ResponseData>", 38),
        std::string("\xFF\xFE<\0R\0/\0>\0", 10),
        // Entities: a bomb, a file, a server, one for parameters, one that nobody uses.
        declaring("<!ENTITY a 'ha'><!ENTITY b '&a;&a;'>" +
                  Numbered(30, "<!ENTITY c", " '&b;&b;&b;&b;&b;&b;&b;&b;'>")),
        declaring("<!ENTITY e SYSTEM 'file:///etc/passwd'>"),
        declaring("<!ENTITY e SYSTEM 'http://127.0.0.1:9/'>"),
        declaring("<!ENTITY % e SYSTEM 'file:///etc/passwd'> %e;"),
        declaring("<!ENTITY e \"]>\">"),
        // What would take time or memory out of proportion.
        declaring("<!-- ]> --><!ATTLIST a b CDATA 'c'>"),
        declaring(Numbered(20'000, "<!ATTLIST a b", " ID #IMPLIED>")),
        declaring("<!ATTLIST a b (" + Numbered(50'000, "c", "|") + "c) #IMPLIED>"),
        "<ResponseData" + Numbered(100'000, " a", "=''") + "/>",
        "<ResponseData" + Numbered(100'000, " xmlns:a", "='u'") + "/>",
        "<ResponseData>" + Repeat(100'000, "<a>") + Repeat(100'000, "</a>") + "</ResponseData>",
        Repeat(200'000, "<!--"),
        std::string(100'000, '<'),
    };
    testing::internal::CaptureStderr();
    for (const std::string& document : documents) {
        for (const Kind& kind : kKinds) {
            SCOPED_TRACE(kind.name + (": " + document.substr(0, 100)));
            EXPECT_EQ(kind.read(document), (Outcome{1104, kind.unread}));
        }
        // The portal's pages are read from all of them, with whatever result.
        GetFormAction(document.c_str());
        GetHiddenFormData(document.c_str());
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace brevint::test

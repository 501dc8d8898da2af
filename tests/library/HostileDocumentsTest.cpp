#include "proxies/PortalForm.h"
#include "support/Text.h"
#include "tests/library/Details.h"
#include "tests/library/Helpers.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

/// Error code, and what a caller reads.
using Outcome = std::pair<double, std::wstring>;

template <class Response>
Outcome Read(const std::string& reply) {
    Response response;
    Fill(response, reply);
    EXPECT_EQ(response.GetSucceeded(), response.GetErrorCode() == 1101);
    return {response.GetErrorCode(), Detail(response)};
}

/// A kind of response, and where it reads a text: the element, with what must stand around it.
struct Kind {
    Outcome (*read)(const std::string& reply);
    const char* element;
    Outcome found; ///< "$" stands for the text
    Outcome absent;
    std::string before = {}, after = {};
};

const Kind kKinds[] = {
    {Read<CDeleteResponse>, "Message", {1100, L"$"}, {1101, L""}},
    {Read<CPathResponse>, "Path", {1101, L"$"}, {1101, L""}},
    {Read<CVersionInfoResponse>, "Version", {1101, L"$"}, {1101, L""}},
    {Read<CUploadFileResponse>, "JobId", {1101, L"$|"}, {1610, L"|"}},
    {Read<CCreateFolderResponse>, "UniqueId", {1101, L"$|"}, {1101, L"|"}},
    {Read<CPollUploadStatusResponse>,
     "Details",
     {1101, L"1|$"},
     {1104, L"2|"},
     "<Status>2</Status>"},
    {Read<CIdentityResponse>,
     "Name",
     {1101, L"2|$|p"},
     {1703, L"0||"},
     "<IsUser>true</IsUser><IdentifyingPartyUri>p</IdentifyingPartyUri>"},
    {Read<CGetFolderContentsResponse>,
     "Name",
     {1101, L"|||$||||||||lockedpublic;"},
     {1101, L"|||||||||||lockedpublic;"},
     "<Item>",
     "</Item>"},
    {Read<CTemplateResponse>, "Name", {1101, L"$||||||;"}, {1101, L"||||||;"}, "<Item>", "</Item>"},
};

std::string Repeat(int count, const std::string& text) {
    std::string all;
    while (count-- > 0) {
        all += text;
    }
    return all;
}

/// Around the markup, in which "@" stands for the element's name.
std::string Document(const Kind& kind, const std::string& markup) {
    std::string text = "<ResponseData>" + kind.before;
    for (const char character : markup) {
        text += character == '@' ? kind.element : std::string(1, character);
    }
    return text + kind.after + "</ResponseData>";
}

TEST(HostileDocuments, TextIsFoundOrNotWhateverStandsAroundIt) {
    ScriptedServer server;
    const auto url = Utf8::ToNarrow(server.Url("/x.dtd"));
    const std::wstring absent = L"(absent)";
    const std::string padding(1'000'000, 'x');
    const std::string name = "<@>\xC3\xA9</@>";
    struct Case {
        std::string markup;
        std::wstring text;
        std::string prologue = {};
    };
    const Case cases[] = {
        {"", absent},
        {"<@/>", L""},
        {"<@></@><@>b</@>", L""},
        {"<@>a</@><@>b</@>", L"a"},
        {"<y><@>a</@></y>", absent},
        {"<@><y>a</y><z>b<y/></z></@>", L"ab"},
        {"<x:@ xmlns:x='urn:x'>a</x:@>", absent},
        {"<@ xmlns='urn:x'>a</@>", absent},
        {"<x:@>a</x:@>", absent},
        {"<@><!-- b --><![CDATA[<a>]]><?c d?>&lt;&#233;&#x1D11E;</@>", L"<a><\u00e9\U0001d11e"},
        {"<@>&amp;#4294967361;&amp;#x110000;&amp;#0;</@>", L"&#4294967361;&#x110000;&#0;"},
        {"<@>99999999999999999999.9e999</@>", L"99999999999999999999.9e999"},
        {"<@> \r\n\xE9\xC3\xA9\xED\xA0\x80</@>", L" \n\ufffd\u00e9\ufffd"},
        {"<@>" + padding + "</@>", std::wstring(padding.begin(), padding.end())},
        {"<y z='" + padding + "'/><@>a</@>", L"a"},
        {"<y " + Numbered(256, " a", "='= b=\"c\" d'") + "/><@>a</@>", L"a"},
        {Repeat(50'000, "<y/>") + "<@>a</@>", L"a"},
        {Repeat(200, "<y>") + Repeat(200, "</y>") + "<@>a</@>", L"a"},
        // What a document says of itself changes nothing, and nothing is fetched.
        {name, L"\u00e9", "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-16\"?>"},
        {name, L"\u00e9", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" standalone=\"yes\"?>"},
        {name, L"\u00e9", "<?xml version=\"1.0\" encoding=\"no-such-encoding\"?>"},
        {name, L"\u00e9", "<?y <!-- -- ?><!-- <a - > --><!DOCTYPE ResponseData>"},
        {name, L"\u00e9", "<!DOCTYPE ResponseData SYSTEM '" + url + "'>"},
        {name, L"\u00e9", "<!DOCTYPE ResponseData PUBLIC '-//x//y' 'file:///etc/passwd'>"},
        {name, L"\u00e9",
         "<!DOCTYPE r [<!ELEMENT a ANY><!ATTLIST a b ID #IMPLIED c ID #IMPLIED>]>"},
    };
    testing::internal::CaptureStderr();
    for (const auto& [markup, text, prologue] : cases) {
        for (const Kind& kind : kKinds) {
            SCOPED_TRACE(kind.element + (": " + prologue + markup.substr(0, 100)));
            Outcome expected = text == absent ? kind.absent : kind.found;
            BaseHlpr::StringReplace(expected.second, L"$", text.c_str());
            EXPECT_TRUE(kind.read(prologue + Document(kind, markup)) == expected);
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(server.ConnectionCount(), 0u);
    const auto million = Document(kKinds[1], Repeat(1'000'000, "<y/>") + "<@>a</@>");
    EXPECT_EQ(kKinds[1].read(million), Outcome(1101, L"a"));
}

TEST(HostileDocuments, AreRefusedByEveryKind) {
    const auto declaring = [](const std::string& declarations) {
        return "<!DOCTYPE ResponseData [" + declarations + "]><ResponseData/>";
    };
    const std::string documents[] = {
        "plain text", "\xEF\xBB\xBF", "<a>", "<a></b>", "<a/><b/>", "<a b=c/>", "<a>&nbsp;</a>",
        "<!DOCTYPE html><html><head><title>502</title></head><body><hr></body></html>",
        "<ResponseData>\x01</ResponseData>", "<ResponseData><!-- -- --></ResponseData>",

        std::string("<ResponseData>\0</ResponseData>", 30), std::string("\xFF\xFE<\0R\0/\0>\0", 10),
        // Entities: a bomb, a file, a file for declarations, and one that nobody uses.
        declaring("<!ENTITY a0 'ha'>" + Numbered(9, "<!ENTITY b", " '&a0;&a0;&a0;&a0;'>")),
        declaring("<!ENTITY e SYSTEM 'file:///etc/passwd'>"),
        declaring("<!ENTITY % e SYSTEM 'file:///etc/passwd'> %e;"), declaring("<!ENTITY e \"]>\">"),
        // What would take time or memory out of proportion.
        declaring("<!-- ]> --><!ATTLIST a b CDATA 'c'>"),
        declaring(Numbered(9'000, "<!ATTLIST a b", " ID #IMPLIED>")),
        declaring("<!ATTLIST a b (" + Numbered(9'000, "c", "|") + "c) #IMPLIED>"),
        "<ResponseData" + Numbered(9'000, " a", "=''") + "/>",
        "<ResponseData" + Numbered(9'000, " xmlns:a", "='u'") + "/>",
        "<ResponseData" + Numbered(200, " xmlns:a", "='u'") + "><b" +
            Numbered(200, " xmlns:b", "='u'") + "/></ResponseData>",
        "<ResponseData>" + Numbered(99'000, "<a", "/>") + "</ResponseData>",
        Repeat(100'000, "<a>") + Repeat(100'000, "</a>"), Repeat(9'000, "<!--"),
        std::string(9'000, '<')};
    testing::internal::CaptureStderr();
    for (const std::string& document : documents) {
        for (const Kind& kind : kKinds) {
            SCOPED_TRACE(kind.element + (": " + document.substr(0, 100)));
            EXPECT_EQ(kind.read(document), Outcome(1104, kind.read("").second));
        }
        GetHiddenFormData(document.c_str()); // A page may be any of them, with whatever result.
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace brevint::test

#include "responses/PortalForm.h"
#include "support/Limits.h"
#include "support/Text.h"
#include "support/Xml.h"
#include "tests/library/Helpers.h"
#include "tests/support/ResponseKinds.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

Reading ReadAs(std::string_view kind, const std::string& reply) {
    auto response = FindKind(kind)->make();
    Fill(*response, reply);
    EXPECT_EQ(response->GetSucceeded(), response->GetErrorCode() == ErrorCode::Success);
    return Read(kind, response.release());
}

/// Where a kind of response reads a text: the element, with what must stand around it.
struct Place {
    const char* kind;
    const char* element;
    Reading found; ///< "$" stands for the text
    Reading absent;
    std::string before = {}, after = {};
};

void PrintTo(const Place& place, std::ostream* out) {
    *out << place.kind;
}

const Place kPlaces[] = {
    {"Delete", "Message", {1100, L"$"}, {1101, L""}},
    {"Path", "Path", {1101, L"$"}, {1101, L""}},
    {"VersionInfo", "Version", {1101, L"$"}, {1101, L""}},
    {"UploadFile", "JobId", {1101, L"$|"}, {1610, L"|"}},
    {"CreateFolder", "UniqueId", {1101, L"$|"}, {1101, L"|"}},
    {"PollUploadStatus", "Details", {1101, L"1|$"}, {1104, L"2|"}, "<Status>2</Status>"},
    {"Identity",
     "Name",
     {1101, L"2|$|p"},
     {1703, L"0||"},
     "<IsUser>true</IsUser><IdentifyingPartyUri>p</IdentifyingPartyUri>"},
    {"GetFolderContents",
     "Name",
     {1101, L"|||$||||||||lockedpublic;"},
     {1101, L"|||||||||||lockedpublic;"},
     "<Item>",
     "</Item>"},
    {"Template", "Name", {1101, L"$||||||;"}, {1101, L"||||||;"}, "<Item>", "</Item>"},
};

/// A reply with the markup, in which "@" stands for the element's name, in that place.
std::string In(const Place& place, const std::string& markup) {
    return Document(place.before + Replace(markup, "@", place.element) + place.after);
}

class HostileText : public testing::TestWithParam<Place> {};

TEST_P(HostileText, IsFoundOrNotWhateverStandsAroundIt) {
    const Place& place = GetParam();
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
        {"<y " + Numbered(257, " a", "='= b=\"c\" d'") + "/><@>a</@>", L"a"},
        {Numbered(60'000, "<y", "/>") + "<@>a</@>", L"a"},
        {Repeat(50'000, "<y/>") + "<@>a</@>", L"a"},
        {Repeat(200, "<y>") + Repeat(200, "</y>") + "<@>a</@>", L"a"},
        // What a document says of itself changes nothing, and nothing is fetched.
        {name, L"\u00e9", "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"utf-16\"?>"},
        {name, L"\u00e9", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" standalone=\"yes\"?>"},
        {name, L"\u00e9", "<?xml version=\"1.0\" encoding=\"no-such-encoding\"?>"},
        {name, L"\u00e9", "<?y <!-- -- ?><!-- <a - > --><!DOCTYPE ResponseData>"},
        {name, L"\u00e9", "<!DOCTYPE ResponseData SYSTEM '" + url + "'>"},
        {"<@>a&x;b</@>", L"ab", "<!DOCTYPE ResponseData SYSTEM '" + url + "'>"},
        {name, L"\u00e9", "<!DOCTYPE ResponseData PUBLIC '-//x//y' 'file:///etc/passwd'>"},
        {name, L"\u00e9",
         "<!DOCTYPE r [<!ELEMENT a ANY><!ATTLIST a b ID #IMPLIED c ID #IMPLIED>]>"},
        {name, L"\u00e9",
         "<!DOCTYPE r [<!-- ]> ' --><?p ]> ?><!ATTLIST a b CDATA \"']>\" c (d | e) 'd'>]>"},
    };
    testing::internal::CaptureStderr();
    for (const auto& [markup, text, prologue] : cases) {
        SCOPED_TRACE(prologue + markup.substr(0, 100));
        Reading expected = text == absent ? place.absent : place.found;
        BaseHlpr::StringReplace(expected.second, L"$", text.c_str());
        EXPECT_TRUE(ReadAs(place.kind, prologue + In(place, markup)) == expected);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(server.ConnectionCount(), 0u);
}

INSTANTIATE_TEST_SUITE_P(Of, HostileText, testing::ValuesIn(kPlaces),
                         [](const auto& test) { return std::string(test.param.kind); });

TEST(HostileDocuments, MayHaveAMillionElements) {
    const auto million = Document(Repeat(1'000'000, "<y/>") + "<Path>a</Path>");
    EXPECT_EQ(ReadAs("Path", million), Reading(1101, L"a"));
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
        Repeat(9'000, "<!--"), std::string(9'000, '<'),
        // Entities: a bomb, a file, a file for declarations, data, and one that nobody uses.
        declaring("<!ENTITY a0 'ha'>" + Numbered(9, "<!ENTITY b", " '&a0;&a0;&a0;&a0;'>")),
        declaring("<!ENTITY e SYSTEM 'file:///etc/passwd'>"),
        declaring("<!ENTITY % e SYSTEM 'file:///etc/passwd'> %e;"),
        declaring("<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'e' NDATA n>"),
        declaring("<!ENTITY e \"]>\">")};
    testing::internal::CaptureStderr();
    for (const std::string& document : documents) {
        SCOPED_TRACE(document.substr(0, 100));
        for (const ResponseKind& kind : kResponseKinds) {
            SCOPED_TRACE(kind.name);
            EXPECT_TRUE(!kind.parses ||
                        ReadAs(kind.name, document) == Reading(1104, ReadAs(kind.name, "").second));
        }
        // A page may be any of them, but holds no form then.
        EXPECT_EQ(GetFormAction(document.c_str()), L"");
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

std::string Within(const std::string& tag, const std::string& content) {
    return '<' + tag + '>' + content + "</" + tag.substr(0, tag.find(' ')) + '>';
}

TEST(HostileDocuments, CostNoMoreThanTheirLengthIsWorth) {
    const auto strict = MarkupMode::Strict;
    const auto tolerant = MarkupMode::Tolerant;
    const auto attributes = [](int count) {
        return Numbered(count, " a", "=''");
    };
    const auto namespaces = [](int count) {
        return Numbered(count, " xmlns:n", "='u:'");
    };
    const auto nested = [](int count) {
        return Repeat(count, "<i>") + Repeat(count, "</i>");
    };
    const auto declared = [](const std::string& text) {
        return "<!DOCTYPE r [" + text + "]><r/>";
    };
    const auto page = [](std::size_t size) {
        return "<p>" + std::string(size - 3, 'x');
    };
    const std::string deep = "<b><div>" + Repeat(240, "<i>");
    const struct {
        const char* what;
        MarkupMode mode;
        std::string accepted, refused;
    } cases[] = {
        {"attributes of an element", strict, Within("r" + attributes(1'900), ""),
         Within("r" + attributes(9'000), "")},
        {"attributes of every element", strict,
         Within("r", Repeat(500, Within("e" + attributes(100), ""))),
         Within("r", Repeat(100, Within("e" + attributes(500), "")))},
        {"namespaces of an element", strict, Within("r" + namespaces(100), ""),
         Within("r" + namespaces(101), "")},
        {"namespaces in force", strict, Within("r", Repeat(9, Within("e" + namespaces(99), ""))),
         Within("r" + namespaces(51), Within("e" + namespaces(51), ""))},
        {"names", strict, Within("r", Numbered(99'000, "<n", "/>")),
         Within("r", Numbered(110'000, "<n", "/>"))},
        {"depth", strict, nested(256), nested(257)},
        {"declarations", strict, declared(Numbered(1'000, "<!ATTLIST a b", " ID #IMPLIED>")),
         declared(Numbered(2'000, "<!ATTLIST a b", " ID #IMPLIED>"))},
        {"values of a declaration", strict,
         declared("<!ATTLIST a b (c" + Numbered(4'000, "|") + ") 'c'>"),
         declared("<!ATTLIST a b (c" + Numbered(9'000, "|") + ") 'c'>")},
        {"faults", strict, Within("r", Repeat(200'000, "<n:e/>")),
         Within("r", Repeat(400'000, "<n:e/>"))},
        {"attributes of a tag", tolerant, "<br" + attributes(1'900) + '>',
         "<br" + attributes(9'000) + '>'},
        {"attributes of every tag", tolerant, Repeat(500, "<br" + attributes(100) + '>'),
         Repeat(100, "<br" + attributes(500) + '>')},
        {"attributes of no element", tolerant,
         "<body>" + Repeat(5, "<body" + attributes(500) + '>'),
         "<body>" + Repeat(100, "<body" + attributes(500) + '>')},
        {"attributes of one tag of no element", tolerant, "<body><body" + attributes(1'900) + '>',
         "<body><body" + attributes(9'000) + '>'},
        {"the same attributes", tolerant, "<br" + attributes(1'000) + Repeat(100, " a999") + '>',
         "<br" + attributes(1'900) + Repeat(9'000, " a1899") + '>'},
        {"names", tolerant, Numbered(90'000, "<n", "/>"), Numbered(110'000, "<n", "/>")},
        {"faults", tolerant, Repeat(200'000, "&"), Repeat(300'000, "&")},
        {"faults deep within", tolerant, deep + Repeat(9'000, "</b>"),
         deep + Repeat(20'000, "</b>")},
        {"length", tolerant, page(Limits::kLongestPage), page(Limits::kLongestPage + 1)},
    };
    testing::internal::CaptureStderr();
    for (const auto& test : cases) {
        SCOPED_TRACE(test.what);
        EXPECT_NE(XmlDocPtr(ParseXML(std::string_view(test.accepted), test.mode)), nullptr);
        EXPECT_EQ(XmlDocPtr(ParseXML(std::string_view(test.refused), test.mode)), nullptr);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    // Declarations add nothing to elements.
    const XmlDocPtr document(ParseXML("<!DOCTYPE r [<!ATTLIST r xmlns CDATA 'u:'>]><r/>", -1));
    EXPECT_NE(SimpleDoXPath("/r", document.get()), nullptr);
}

} // namespace
} // namespace brevint::test
